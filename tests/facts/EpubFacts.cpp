#include "facts/Facts.h"

#include "epub/EPUBParser.h"
#include "epub/NCXParser.h"
#include "epub/NavigationTree.h"
#include "media/ImageRepresentations.h"
#include "text/NumericValues.h"

namespace caddis::facts {

namespace {

// "KEY", "KEY.count" or "KEY[0]" of the metadata; "count" of all of it.
Answer metaDataFact(const Dictionary& metaData, std::u16string_view key)
{
    if (key == u"count")
        return decimal(metaData.count());
    const std::size_t bracket = key.find(u'[');
    const bool isCount = key.ends_with(u".count");
    const Value* value = metaData.find(key.substr(0, isCount ? key.size() - 6 : bracket));
    if (!value)
        return isCount ? decimal(0) : Answer(std::nullopt);
    const auto* list = value->as<Array>();
    if (isCount)
        return decimal(list ? list->size() : 1);
    if (list && bracket != key.npos) {
        const auto index = static_cast<std::size_t>(integerValue(key.substr(bracket + 1)));
        value = index < list->size() ? &(*list)[index] : nullptr;
    }
    const auto* text = value ? value->as<String>() : nullptr;
    return text ? Answer(*text) : Answer(std::nullopt);
}

// In the order of the document, parents before their children.
void flatten(const Array& entries, std::vector<const Dictionary*>& flat)
{
    for (const Value& entry : entries) {
        flat.push_back(entry.as<Dictionary>());
        if (const Value* children = flat.back()->find(u"children"))
            flatten(*children->as<Array>(), flat);
    }
}

// "flatCount", "[0].label", "[-1].content".
Answer ncxFact(EPUBParser& book, std::u16string_view key)
{
    const auto data = book.ncxFile() ? book.dataForNamedFile(*book.ncxFile()) : std::nullopt;
    const Array children = data ? NCXParser(*data).children() : Array();
    std::vector<const Dictionary*> flat;
    flatten(children, flat);
    if (key == u".flatCount")
        return decimal(flat.size());
    if (flat.empty())
        return std::nullopt;
    const std::int64_t index = integerValue(key.substr(1));
    const std::size_t place
        = index < 0 ? flat.size() - static_cast<std::size_t>(-index) : static_cast<std::size_t>(index);
    return place < flat.size() ? Answer(flat[place]->stringForKey(key.substr(key.find(u'.') + 1)))
                               : Answer(std::nullopt);
}

Answer coverFact(EPUBParser& book)
{
    const auto cover = book.cover();
    if (!cover)
        return std::nullopt;
    const Size size = pixelSize(*cover);
    return String::fromLatin1(
        std::to_string(static_cast<int>(size.width)) + "x" + std::to_string(static_cast<int>(size.height)));
}

} // namespace

Answer epubFact(const Question& question)
{
    const std::u16string_view key = question.key;
    if (key == u"opensAsArchive")
        return yesOrNo(ZipArchive::initWithZipFile(question.path) != nullptr);
    EPUBParser book(question.path);
    if (key == u"opfFile")
        return book.opfFile();
    if (key == u"ncxFile")
        return book.ncxFile();
    if (key == u"tocFile")
        return book.tocFile();
    if (key == u"coverPath")
        return book.coverPath();
    if (key == u"cover.pixelSize")
        return coverFact(book);
    if (key == u"spines.count")
        return decimal(book.spines().size());
    if (key == u"items.count")
        return decimal(book.items().size());
    if (key == u"auxiliaryFiles.count")
        return decimal(book.auxiliaryFiles().size());
    if (key == u"DRM")
        return book.DRM();
    if (key == u"hasDRM")
        return yesOrNo(book.hasDRM());
    if (key.starts_with(u"metaData."))
        return metaDataFact(book.metaData(), key.substr(9));
    if (key.starts_with(u"ncx"))
        return ncxFact(book, key.substr(3));
    if (key == u"textContents")
        return book.textContents();
    if (key == u"rootChildren.count")
        return book.rootChildren() ? decimal(book.rootChildren()->size()) : Answer(std::nullopt);
    if (key == u"rootChildren.totalCount")
        return book.rootChildren() ? decimal(countChildren(*book.rootChildren())) : Answer(std::nullopt);
    return Answer::skip("not built yet");
}

} // namespace caddis::facts
