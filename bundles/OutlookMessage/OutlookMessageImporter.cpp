// A saved message is a compound file whose streams are its properties (MS-OXMSG): "__substg1.0_" with the
// number and the type of the property, eight hexadecimal digits, and for those of a fixed size the entries of
// "__properties_version1.0". Recipients have storages of their own.

#include "bundles/OutlookMessage/CompressedRtf.h"
#include "bundles/support/CodePage.h"
#include "bundles/support/CompoundFile.h"
#include "bundles/support/Importer.h"
#include "bundles/support/InputFile.h"
#include "bundles/support/LittleEndian.h"
#include "bundles/support/PageText.h"
#include "bundles/support/TextSink.h"
#include "bundles/support/Utf8.h"
#include "markup/MarkupData.h"
#include "platform/richtext/RTF.h"

#include <array>
#include <cstdio>
#include <set>

namespace caddis::bundles {

namespace {

// Numbers of properties (MS-OXPROPS).
enum Property : std::uint16_t {
    Subject = 0x0037,
    SubmitTime = 0x0039,
    SentByName = 0x0042,
    SentByAddress = 0x0065,
    SenderName = 0x0C1A,
    SenderAddress = 0x0C1F,
    DeliveryTime = 0x0E06,
    Body = 0x1000,
    CompressedRichText = 0x1009,
    HtmlBody = 0x1013,
    MessageIdentifier = 0x1035,
    DisplayName = 0x3001,
    Address = 0x3003,
    AttachmentName = 0x3704,
    AttachmentLongName = 0x3707,
    SmtpAddress = 0x39FE,
    MessageCodePage = 0x3FFD,
    SenderSmtpAddress = 0x5D01,
};
enum Type : std::uint16_t { CodePageText = 0x001E, Utf16Text = 0x001F, Binary = 0x0102 };

class Message {
public:
    explicit Message(const CompoundFile& file)
        : m_file(file)
        , m_fixed(file.stream("__properties_version1.0").value_or(std::string()))
    {
        constexpr std::uint32_t Int32 = 3;
        if (const auto place = fixed(std::uint32_t(MessageCodePage) << 16U | Int32))
            m_codePage = u32(m_fixed, *place);
    }

    /// Empty when it is missing. `storage` is empty for the message itself, else ends with "/".
    std::string text(Property property, const std::string& storage = {}) const
    {
        if (const auto utf16 = stream(property, Utf16Text, storage))
            return textInUtf16(*utf16).utf8();
        const auto bytes = stream(property, CodePageText, storage);
        return bytes ? textInCodePage(*bytes, m_codePage).utf8() : std::string();
    }
    std::optional<std::string> bytes(Property property) const { return stream(property, Binary, {}); }
    std::optional<double> time(Property property) const
    {
        constexpr std::uint32_t Time = 0x40;
        const auto place = fixed(std::uint32_t(property) << 16U | Time);
        return place ? secondsOfFileTime(u64(m_fixed, *place)) : std::nullopt;
    }
    /// The storages whose names begin so, each with a "/" at its end.
    std::set<std::string> storages(std::string_view beginning) const
    {
        std::set<std::string> found;
        for (const CompoundFile::Entry& entry : m_file.streams()) {
            if (startsWithNoCase(entry.path, beginning))
                found.insert(entry.path.substr(0, entry.path.find('/') + 1));
        }
        return found;
    }

private:
    std::optional<std::string> stream(Property property, Type type, const std::string& storage) const
    {
        std::array<char, 32> name {};
        std::snprintf(name.data(), name.size(), "__substg1.0_%04X%04X", unsigned(property), unsigned(type));
        return m_file.stream(storage + name.data());
    }
    // Where the value of a property stands: entries of 16 bytes, tag, flags and value.
    std::optional<std::size_t> fixed(std::uint32_t tag) const
    {
        constexpr std::size_t HeadSize = 32, EntrySize = 16;
        for (std::size_t at = HeadSize; at + EntrySize <= m_fixed.size(); at += EntrySize) {
            if (u32(m_fixed, at) == tag)
                return at + 8;
        }
        return std::nullopt;
    }

    const CompoundFile& m_file;
    std::string m_fixed;
    unsigned m_codePage = 1252;
};

std::string firstOf(const std::string& first, const std::string& second)
{
    return first.empty() ? second : first;
}

void setHead(const Message& message, Attributes& attributes)
{
    attributes.setString("kMDItemSubject", message.text(Subject));
    attributes.setString("kMDItemTitle", message.text(Subject));
    const std::string identifier = message.text(MessageIdentifier);
    const bool isBracketed = identifier.starts_with('<') && identifier.find('>') != identifier.npos;
    attributes.setString(
        "kMDItemIdentifier", isBracketed ? identifier.substr(1, identifier.find('>') - 1) : identifier);
    const auto sent = message.time(SubmitTime);
    attributes.setDate("kMDItemContentCreationDate", sent ? sent : message.time(DeliveryTime));
    const std::string address = firstOf(
        message.text(SenderSmtpAddress), firstOf(message.text(SentByAddress), message.text(SenderAddress)));
    attributes.addString(
        "kMDItemAuthors", firstOf(message.text(SentByName), firstOf(message.text(SenderName), address)));
    attributes.addString("kMDItemAuthorEmailAddresses", address);
}

void addRecipients(const Message& message, Attributes& attributes)
{
    for (const std::string& storage : message.storages("__recip_version1.0_")) {
        if (attributes.shouldStop())
            break;
        const std::string address
            = firstOf(message.text(SmtpAddress, storage), message.text(Address, storage));
        attributes.addString("kMDItemRecipients", firstOf(message.text(DisplayName, storage), address));
        attributes.addString("kMDItemRecipientEmailAddresses", address);
    }
}

// Of the three forms that a body may have the plainest.
void appendBody(const Message& message, TextSink& text)
{
    if (const std::string plain = message.text(Body); !trimmed(plain).empty()) {
        text.append(untilZero(plain));
        return;
    }
    const auto html = message.bytes(HtmlBody);
    const std::string htmlText = html ? std::string() : message.text(HtmlBody);
    if (html || !htmlText.empty()) {
        const String page = html ? markupTextOfData(*html, {}).text : String::fromUtf8(untilZero(htmlText));
        text.append(plainTextOfPage(page).view());
        return;
    }
    const auto compressed = message.bytes(CompressedRichText);
    const auto rtf = compressed ? decompressRtf(*compressed) : std::nullopt;
    if (const auto rich = rtf ? attributedStringWithRTF(Data::copyOf(*rtf)) : std::nullopt)
        text.append(rich->string().view());
}

void appendAttachmentNames(const Message& message, const Attributes& attributes, TextSink& text)
{
    for (const std::string& storage : message.storages("__attach_version1.0_")) {
        if (attributes.shouldStop() || text.isFull())
            break;
        text.appendLine(untilZero(
            firstOf(message.text(AttachmentLongName, storage), message.text(AttachmentName, storage))));
    }
}

} // namespace

bool importFile(Attributes& attributes, std::string_view, const std::string& path)
{
    const auto bytes = readFile(path);
    const auto file = bytes ? CompoundFile::open(*bytes) : std::nullopt;
    if (!file || !file->stream("__properties_version1.0"))
        return false;
    const Message message(*file);
    setHead(message, attributes);
    addRecipients(message, attributes);
    TextSink text(attributes);
    appendBody(message, text);
    text.endLine();
    appendAttachmentNames(message, attributes, text);
    return true;
}

} // namespace caddis::bundles
