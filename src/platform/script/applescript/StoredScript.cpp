#include "platform/script/applescript/StoredScript.h"

#include "platform/base/MutableString.h"
#include "platform/script/applescript/DateText.h"
#include "platform/script/applescript/SourceText.h"

#include <algorithm>
#include <cmath>

namespace caddis::applescript {

namespace {

constexpr unsigned DeepestValue = 50; // The parser reads 200 levels; a statement around it needs some.

// Between bars everything may stand but a bar and a line end.
bool hasSource(Symbol label)
{
    return plainName(label).view().find_first_of(u"|\r\n") == std::u16string_view::npos;
}

bool hasSource(const Datum& value, unsigned depth = 0)
{
    switch (value.kind()) {
    case Kind::Real:
        return std::isfinite(value.asReal());
    case Kind::Date: {
        const std::int64_t seconds = value.as<DateObject>().seconds;
        return dateFromText(dateText(seconds), seconds) == seconds;
    }
    case Kind::Missing:
    case Kind::Boolean:
    case Kind::Integer:
    case Kind::Class:
    case Kind::Constant:
    case Kind::Text:
    case Kind::File:
    case Kind::Data:
    case Kind::Application:
        return true;
    case Kind::List:
        return depth < DeepestValue && std::ranges::all_of(value.as<List>().items(), [&](const Datum& item) {
            return hasSource(item, depth + 1);
        });
    case Kind::Record:
        return depth < DeepestValue
            && std::ranges::all_of(value.as<Record>().fields(), [&](const Record::Field& field) {
                   return hasSource(field.first) && hasSource(field.second, depth + 1);
               });
    default:
        return false;
    }
}

struct Edit {
    Range range; ///< of the source
    String value;
};

// Values for the properties of a script and of the scripts written in it.
void collectEdits(const ScriptObject& script, std::vector<Edit>& edits)
{
    for (std::size_t index = 0; index < script.slots.size(); ++index) {
        const ScriptCode::Slot& slot = script.code.slots[index];
        const Datum& value = script.slots[index];
        const auto* inner = value.get<ScriptObject>();
        if (slot.kind == ScriptCode::SlotKind::Script && inner && &inner->code == slot.script.get())
            collectEdits(*inner, edits);
        else if (slot.kind == ScriptCode::SlotKind::Property && hasSource(value))
            edits.push_back({ slot.initializerRange, exactSourceText(value) });
    }
}

void appendCaptures(MutableString& out, const ScriptObject& script)
{
    for (std::size_t index = 0; index < script.captures.size(); ++index) {
        const Datum& value = script.captures[index];
        if (hasSource(value))
            out.append(u"property ")
                .append(sourceName(script.code.captures[index].name))
                .append(u" : ")
                .append(exactSourceText(value))
                .append(u'\n');
    }
}

bool inheritsFromItsOwnSource(const ScriptObject& script)
{
    const ScriptObject* parent = script.parentScript();
    return parent && parent != script.enclosing() && parent->program == script.program;
}

} // namespace

std::optional<String> storedSource(const ScriptObject& script)
{
    if (inheritsFromItsOwnSource(script))
        return std::nullopt;
    std::vector<Edit> edits;
    collectEdits(script, edits);
    std::ranges::sort(edits, {}, [](const Edit& edit) { return edit.range.location; });
    const std::u16string_view source = script.program->source;
    MutableString out;
    appendCaptures(out, script);
    std::size_t at = script.code.bodyRange.location;
    for (const Edit& edit : edits) {
        out.append(source.substr(at, edit.range.location - at)).append(u" : ").append(edit.value);
        at = edit.range.end();
    }
    out.append(source.substr(at, script.code.bodyRange.end() - at));
    return std::move(out).take();
}

} // namespace caddis::applescript
