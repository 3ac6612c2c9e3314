#include "ImporterCommands.h"

#include "Output.h"
#include "ValuePrinter.h"
#include "importers/MetaDataImporter.h"

namespace caddis::tool {

namespace {

const char* whyNot(const MetaDataImporter::Record& record)
{
    switch (record.preflight) {
    case Preflight::Passed:
        return record.isSkipped ? "never used" : nullptr;
    case Preflight::NoSuchFile:
        return "no bundle, or no code in it";
    case Preflight::NotLoadable:
        return "its code is no shared object";
    case Preflight::WrongArchitecture:
        return "its code is for another machine";
    case Preflight::MissingSymbol:
        return "its code lacks a factory function";
    }
    return nullptr;
}

Array arrayOf(const std::vector<String>& texts) { return { texts.begin(), texts.end() }; }

} // namespace

ExitCode importers(const Invocation& invocation)
{
    const auto records = MetaDataImporter::sharedImporter().records();
    for (const auto& record : records) {
        Dictionary entry { { u"contentTypes"_s, arrayOf(record.contentTypes) },
            { u"extensions"_s, arrayOf(record.extensions) } };
        if (const char* reason = whyNot(record))
            entry.set(u"skipped"_s, Value(String::fromLatin1(reason)));
        if (invocation.json) {
            entry.set(u"path"_s, Value(record.path));
            print(json(entry) + '\n');
        } else {
            print(record.path.utf8() + '\n' + lines(entry));
        }
    }
    return records.empty() ? NothingFound : Success;
}

} // namespace caddis::tool
