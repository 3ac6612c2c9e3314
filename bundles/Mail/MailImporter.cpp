#include "bundles/support/Importer.h"
#include "bundles/support/PageText.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/Utf8.h"
#include "platform/base/LeftOut.h"

#include <array>
#include <cstdlib>
#include <fcntl.h>
#include <gmime/gmime.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace caddis::bundles {

namespace {

// A message of more parts is an attack, and a folder of more messages is searched by its first.
constexpr int MaximumParts = 1000;
constexpr int MaximumDepth = 32;
constexpr int MaximumMarks = 10'000;
constexpr std::int64_t MostSearched = 256 << 20; // Bytes that are searched for such a message beforehand.
constexpr std::string_view Mark = "\n--";
constexpr int MaximumMessages = 1000;
constexpr std::size_t MaximumPart = 16 * 1024 * 1024;
constexpr auto ManyParts = u"parts of a message after the first 1000, or very deep in it";

struct Unreference {
    void operator()(void* object) const { g_object_unref(object); }
};
template <typename Type> using Owned = std::unique_ptr<Type, Unreference>;

std::string_view viewOf(const char* text) { return text ? text : std::string_view(); }

class MessageReader {
public:
    MessageReader(Attributes& attributes, TextSink& text)
        : m_attributes(attributes)
        , m_text(text)
    {
    }

    void setHeaders(GMimeMessage* message)
    {
        const std::string_view subject = viewOf(g_mime_message_get_subject(message));
        m_attributes.setString("kMDItemSubject", subject);
        m_attributes.setString("kMDItemTitle", subject);
        m_attributes.setString("kMDItemIdentifier", viewOf(g_mime_message_get_message_id(message)));
        if (GDateTime* date = g_mime_message_get_date(message))
            m_attributes.setDate(
                "kMDItemContentCreationDate", static_cast<double>(g_date_time_to_unix(date)));
        addAddresses(g_mime_message_get_from(message), "kMDItemAuthors", "kMDItemAuthorEmailAddresses", 0);
        for (const auto kind : { GMIME_ADDRESS_TYPE_TO, GMIME_ADDRESS_TYPE_CC, GMIME_ADDRESS_TYPE_BCC })
            addAddresses(g_mime_message_get_addresses(message, kind), "kMDItemRecipients",
                "kMDItemRecipientEmailAddresses", 0);
    }

    /// The text of a part and of all parts inside it.
    void read(GMimeObject* part, int depth)
    {
        if (!part || m_text.isFull() || m_attributes.shouldStop())
            return;
        if (depth > MaximumDepth || ++m_parts > MaximumParts)
            return noteLeftOut(ManyParts);
        if (GMIME_IS_MESSAGE_PART(part)) {
            if (GMimeMessage* message = g_mime_message_part_get_message(GMIME_MESSAGE_PART(part))) {
                m_text.appendLine(viewOf(g_mime_message_get_subject(message)));
                read(g_mime_message_get_mime_part(message), depth + 1);
            }
        } else if (GMIME_IS_MULTIPART(part)) {
            readMultipart(GMIME_MULTIPART(part), depth);
        } else if (GMIME_IS_TEXT_PART(part)) {
            readText(GMIME_TEXT_PART(part));
        }
    }

private:
    void addAddresses(InternetAddressList* list, const char* names, const char* addresses, int depth)
    {
        const int count = list && depth < MaximumDepth ? internet_address_list_length(list) : 0;
        for (int i = 0; i < count && !m_attributes.shouldStop(); ++i) {
            InternetAddress* address = internet_address_list_get_address(list, i);
            const std::string_view name = viewOf(internet_address_get_name(address));
            if (INTERNET_ADDRESS_IS_GROUP(address)) {
                addAddresses(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(address)), names,
                    addresses, depth + 1);
            } else {
                const std::string_view mailbox
                    = viewOf(internet_address_mailbox_get_addr(INTERNET_ADDRESS_MAILBOX(address)));
                m_attributes.addString(names, name.empty() ? mailbox : name);
                m_attributes.addString(addresses, mailbox);
            }
        }
    }

    // Of alternatives the first that is plain text says it all; without one the last does (RFC 2046, 5.1.4).
    void readMultipart(GMimeMultipart* multipart, int depth)
    {
        const int count = g_mime_multipart_get_count(multipart);
        GMimeContentType* type = g_mime_object_get_content_type(GMIME_OBJECT(multipart));
        if (!g_mime_content_type_is_type(type, "multipart", "alternative")) {
            for (int i = 0; i < count && m_parts <= MaximumParts; ++i)
                read(g_mime_multipart_get_part(multipart, i), depth + 1);
            return;
        }
        GMimeObject* chosen = nullptr;
        for (int i = 0; i < std::min(count, MaximumParts); ++i) {
            chosen = g_mime_multipart_get_part(multipart, i);
            if (g_mime_content_type_is_type(g_mime_object_get_content_type(chosen), "text", "plain"))
                break;
        }
        read(chosen, depth + 1);
    }

    void readText(GMimeTextPart* part)
    {
        const std::unique_ptr<char, decltype(&g_free)> text(g_mime_text_part_get_text(part), g_free);
        const std::string_view view = viewOf(text.get()).substr(0, MaximumPart);
        if (view.size() == MaximumPart)
            noteLeftOut(u"parts of a message beyond 16 MiB");
        m_text.endLine();
        if (g_mime_content_type_is_type(g_mime_object_get_content_type(GMIME_OBJECT(part)), "text", "html"))
            m_text.append(plainTextOfPage(String::fromUtf8(view)).view());
        else
            m_text.append(view);
        m_text.endLine();
    }

    Attributes& m_attributes;
    TextSink& m_text;
    int m_parts = 0;
};

bool readMessage(GMimeParser* parser, Attributes& attributes, TextSink& text)
{
    const Owned<GMimeMessage> message(g_mime_parser_construct_message(parser, nullptr));
    if (!message)
        return false;
    MessageReader reader(attributes, text);
    reader.setHeaders(message.get());
    reader.read(g_mime_message_get_mime_part(message.get()), 0);
    return true;
}

// The attributes of a mail folder are those of its messages; one subject would be misleading.
bool readFolder(GMimeParser* parser, Attributes& attributes, TextSink& text)
{
    int count = 0;
    while (
        !g_mime_parser_eos(parser) && count < MaximumMessages && !text.isFull() && !attributes.shouldStop()) {
        const Owned<GMimeMessage> message(g_mime_parser_construct_message(parser, nullptr));
        if (!message)
            break;
        ++count;
        text.appendLine(viewOf(g_mime_message_get_subject(message.get())));
        MessageReader(attributes, text).read(g_mime_message_get_mime_part(message.get()), 0);
    }
    if (count == MaximumMessages && !g_mime_parser_eos(parser))
        noteLeftOut(u"messages after the first 1000");
    return count > 0;
}

// Bytes; the end is behind the last one.
using Bounds = std::array<std::int64_t, 2>;

std::int64_t sizeOf(int descriptor)
{
    struct stat status { };
    return fstat(descriptor, &status) == 0 ? status.st_size : 0;
}

// How many lines that look like the beginning of a part a message has had when this piece of it is over. At
// MaximumMarks `bytes` is cut there.
int marksAfter(std::string_view& bytes, int marks, bool isFolder)
{
    std::size_t last = 0;
    const auto hasNextMessage = [&](std::size_t end) {
        return isFolder && bytes.substr(last, end - last).find("\nFrom ") != bytes.npos;
    };
    for (auto mark = bytes.find(Mark); mark != bytes.npos; mark = bytes.find(Mark, mark + 1)) {
        marks = hasNextMessage(mark) ? 1 : marks + 1;
        last = mark;
        if (marks == MaximumMarks) {
            bytes = bytes.substr(0, mark);
            return marks;
        }
    }
    return hasNextMessage(bytes.size()) ? 0 : marks;
}

// The library makes every part of a message before the first can be seen, so all ends for it where a message
// of too many parts is in the middle of them.
Bounds withoutManyParts(int descriptor, Bounds bounds, bool isFolder)
{
    std::string piece(64 * 1024, '\0');
    const std::int64_t end = std::min(bounds[1], bounds[0] + MostSearched);
    int marks = 0;
    ssize_t length = 0;
    for (auto at = bounds[0]; at < end; at += length - ssize_t(Mark.size()) + 1) {
        length = pread(descriptor, piece.data(), piece.size(), at);
        if (length < ssize_t(Mark.size()))
            break;
        std::string_view bytes(piece.data(), std::size_t(length));
        marks = marksAfter(bytes, marks, isFolder);
        if (marks == MaximumMarks) {
            noteLeftOut(ManyParts);
            return { bounds[0], at + std::int64_t(bytes.size()) };
        }
    }
    return bounds;
}

// An emlx file is the length of the message in a line of digits, the message, and a property list.
std::optional<Bounds> boundsOfEmlx(int descriptor)
{
    char head[32] = {};
    const ssize_t length = pread(descriptor, head, sizeof head - 1, 0);
    char* end = nullptr;
    const std::int64_t size = std::strtoll(head, &end, 10);
    const auto line = std::string_view(head, length > 0 ? static_cast<std::size_t>(length) : 0).find('\n');
    if (line == std::string_view::npos || end == head || size <= 0 || size > (1LL << 40))
        return std::nullopt;
    const auto begin = static_cast<std::int64_t>(line + 1);
    return Bounds { begin, begin + size };
}

} // namespace

bool importFile(Attributes& attributes, std::string_view contentType, const std::string& path)
{
    static const bool isReady = (g_mime_init(), true);
    const int descriptor = isReady ? open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK) : -1;
    if (descriptor < 0)
        return false;
    const bool isFolder = contentType == "com.apple.mail.mbox";
    const auto whole = (endsWithNoCase(path, ".emlx") ? boundsOfEmlx(descriptor) : std::nullopt)
                           .value_or(Bounds { 0, sizeOf(descriptor) });
    const auto bounds = withoutManyParts(descriptor, whole, isFolder);
    // The stream closes the descriptor.
    const Owned<GMimeStream> stream(g_mime_stream_fs_new_with_bounds(descriptor, bounds[0], bounds[1]));
    const Owned<GMimeParser> parser(g_mime_parser_new_with_stream(stream.get()));
    TextSink text(attributes);
    if (!isFolder)
        return readMessage(parser.get(), attributes, text);
    g_mime_parser_set_format(parser.get(), GMIME_FORMAT_MBOX);
    return readFolder(parser.get(), attributes, text);
}

} // namespace caddis::bundles
