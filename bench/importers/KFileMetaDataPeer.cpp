// KFileMetaData's extractors in one process: reads names of files, extracts metadata and text of each with
// every extractor for its type, and prints how many properties and characters there were.

#include <KFileMetaData/Extractor>
#include <KFileMetaData/ExtractorCollection>
#include <KFileMetaData/SimpleExtractionResult>

#include <QMimeDatabase>
#include <cstdio>
#include <iostream>
#include <string>

int main()
{
    const KFileMetaData::ExtractorCollection extractors;
    const QMimeDatabase types;
    qsizetype properties = 0;
    qsizetype characters = 0;
    for (std::string line; std::getline(std::cin, line);) {
        const QString path = QString::fromStdString(line);
        const QString type = types.mimeTypeForFile(path, QMimeDatabase::MatchExtension).name();
        KFileMetaData::SimpleExtractionResult result(path, type,
            KFileMetaData::ExtractionResult::ExtractMetaData
                | KFileMetaData::ExtractionResult::ExtractPlainText);
        for (KFileMetaData::Extractor* extractor : extractors.fetchExtractors(type))
            extractor->extract(&result);
        properties += result.properties().size();
        characters += result.text().size();
    }
    std::printf("%lld properties, %lld characters\n", static_cast<long long>(properties),
        static_cast<long long>(characters));
}
