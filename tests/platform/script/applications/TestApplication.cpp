// TestApplication SOCKET: answers events about a few notes, until it is told to quit.

#include "platform/base/Descriptor.h"
#include "platform/script/FlattenedDescriptor.h"

#include <algorithm>
#include <array>
#include <sys/socket.h>
#include <sys/un.h>

namespace {

using namespace caddis;

struct Note {
    std::int32_t id;
    String name;
    String body;
    EventDescriptor tint;
};

struct Refusal {
    std::int32_t number;
    std::u16string_view text;
};

std::vector<Note> notes { { 1, String(u"first"), String(u"one"), EventDescriptor() },
    { 2, String(u"second"), String(u"two words"), EventDescriptor() } };

EventDescriptor type(FourCharCode code) { return EventDescriptor::withCode("type"_code, code); }

EventDescriptor objectOf(const Note& note)
{
    return EventDescriptor::record(
        { { "want"_code, type("note"_code) },
            { "form"_code, EventDescriptor::withCode("enum"_code, "ID  "_code) },
            { "seld"_code, EventDescriptor::withInt32(note.id) }, { "from"_code, EventDescriptor() } },
        "obj "_code);
}

// The notes that a specifier names; those of the application itself are all of them.
std::vector<Note*> notesFor(const EventDescriptor& specifier)
{
    const EventDescriptor key = specifier.descriptorForKeyword("seld"_code);
    std::vector<Note*> found;
    for (Note& note : notes) {
        const auto index = static_cast<std::int32_t>(&note - notes.data()) + 1;
        switch (specifier.descriptorForKeyword("form"_code).codeValue().value_or(0)) {
        case "indx"_code:
            if (key.codeValue() == "all "_code || key.int32Value() == index
                || key.int32Value() == index - 1 - static_cast<std::int32_t>(notes.size()))
                found.push_back(&note);
            break;
        case "name"_code:
            if (key.stringValue() == note.name)
                found.push_back(&note);
            break;
        case "ID  "_code:
            if (key.int32Value() == note.id)
                found.push_back(&note);
            break;
        default:
            break;
        }
    }
    return found;
}

EventDescriptor oneOrAll(const EventDescriptor& specifier, std::vector<EventDescriptor> values)
{
    if (specifier.descriptorForKeyword("seld"_code).codeValue() == "all "_code)
        return EventDescriptor::list(std::move(values));
    if (values.empty())
        throw Refusal { -1728, u"Can’t get the note." };
    return values.front();
}

EventDescriptor get(const EventDescriptor& specifier)
{
    std::vector<EventDescriptor> values;
    const FourCharCode wanted = specifier.descriptorForKeyword("want"_code).codeValue().value_or(0);
    if (wanted == "note"_code) {
        for (const Note* note : notesFor(specifier))
            values.push_back(objectOf(*note));
        return oneOrAll(specifier, std::move(values));
    }
    const FourCharCode property = specifier.descriptorForKeyword("seld"_code).codeValue().value_or(0);
    const EventDescriptor owner = specifier.descriptorForKeyword("from"_code);
    if (property == "ownr"_code && owner.isNull())
        return EventDescriptor::withString(String(u"Ada"));
    for (const Note* note : notesFor(owner))
        values.push_back(property == "pnam"_code ? EventDescriptor::withString(note->name)
                : property == "body"_code        ? EventDescriptor::withString(note->body)
                                                 : note->tint);
    return oneOrAll(owner, std::move(values));
}

EventDescriptor set(const EventDescriptor& specifier, const EventDescriptor& value)
{
    const FourCharCode property = specifier.descriptorForKeyword("seld"_code).codeValue().value_or(0);
    for (Note* note : notesFor(specifier.descriptorForKeyword("from"_code))) {
        if (property == "tint"_code)
            note->tint = value;
        else
            (property == "body"_code ? note->body : note->name) = value.stringValue().value_or(String());
    }
    return {};
}

EventDescriptor make(const EventDescriptor& event)
{
    const EventDescriptor properties = event.descriptorForKeyword("prdt"_code);
    const auto text = [&](FourCharCode code) {
        return properties.descriptorForKeyword(code).stringValue().value_or(String());
    };
    const bool atEnd = event.descriptorForKeyword("insh"_code).descriptorForKeyword("kpos"_code).codeValue()
        == "end "_code;
    notes.insert(atEnd ? notes.end() : notes.begin(),
        { static_cast<std::int32_t>(notes.size()) + 1, text("pnam"_code), text("body"_code),
            properties.descriptorForKeyword("tint"_code) });
    return objectOf(atEnd ? notes.back() : notes.front());
}

// The whole event comes back, so that a script sees what was sent.
EventDescriptor answerTo(const EventDescriptor& event)
{
    const EventDescriptor direct = event.descriptorForKeyword("----"_code);
    switch (event.descriptorForKeyword("evid"_code).codeValue().value_or(0)) {
    case "getd"_code:
        return get(direct);
    case "setd"_code:
        return set(direct, event.descriptorForKeyword("data"_code));
    case "cnte"_code:
        return EventDescriptor::withInt32(static_cast<std::int32_t>(notes.size()));
    case "doex"_code:
        return EventDescriptor::withBoolean(!notesFor(direct).empty());
    case "crel"_code:
        return make(event);
    case "delo"_code:
        for (const Note* note : notesFor(direct))
            notes.erase(notes.begin() + (note - notes.data()));
        return {};
    case "echo"_code:
        return EventDescriptor::list({ direct, event.descriptorForKeyword("tint"_code),
            event.descriptorForKeyword("loud"_code), event.descriptorForKeyword("incl"_code) });
    case "getm"_code:
        return event.descriptorForKeyword("timo"_code);
    default:
        throw Refusal { 42, u"I would rather not." };
    }
}

EventDescriptor reply(const EventDescriptor& event)
{
    try {
        return EventDescriptor::record({ { "----"_code, answerTo(event) } });
    } catch (const Refusal& refusal) {
        return EventDescriptor::record({ { "errn"_code, EventDescriptor::withInt32(refusal.number) },
            { "errs"_code, EventDescriptor::withString(String(refusal.text)) } });
    }
}

std::string readAll(int socket)
{
    std::string bytes;
    std::array<char, 4096> piece;
    for (ssize_t count = 0; (count = read(socket, piece.data(), piece.size())) > 0;)
        bytes.append(piece.data(), static_cast<std::size_t>(count));
    return bytes;
}

} // namespace

int main(int, char** arguments)
{
    sockaddr_un address = { .sun_family = AF_UNIX, .sun_path = {} };
    std::string_view(arguments[1]).copy(address.sun_path, sizeof address.sun_path - 1);
    const Descriptor listener(socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0));
    if (bind(listener.number(), reinterpret_cast<const sockaddr*>(&address), sizeof address) != 0
        || listen(listener.number(), 5) != 0)
        return 1;
    std::vector<Descriptor> left; // Callers that get no answer.
    while (true) {
        Descriptor caller(accept(listener.number(), nullptr, nullptr));
        const auto event = unflattenDescriptor(Data::copyOf(readAll(caller.number())));
        const auto id = event ? event->descriptorForKeyword("evid"_code).codeValue() : 0;
        if (id == "quit"_code)
            return 0;
        if (id == "hang"_code)
            left.push_back(std::move(caller));
        else if (event) {
            const Data bytes
                = id == "babl"_code ? Data::copyOf("dle2 what?") : flattenDescriptor(reply(*event));
            if (write(caller.number(), bytes.bytes(), bytes.size()) < 0)
                return 1;
        }
    }
}
