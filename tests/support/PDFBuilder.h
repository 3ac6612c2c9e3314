#pragma once

#include "platform/base/Data.h"

#include <cstdio>
#include <string>
#include <utility>
#include <vector>

namespace caddis {

/// Writes small PDF documents from the text of their objects.
///
///     PDFBuilder pdf;
///     pdf.page("BT /F1 12 Tf 72 700 Td (Hello) Tj ET");
///     auto document = PDFDocument::initWithData(pdf.data());
///
/// /F1 is Helvetica (WinAnsiEncoding), /F2 Courier; more resources go into resources().
class PDFBuilder {
public:
    /// Adds an object and returns its number; `reference(number)` refers to it.
    int object(std::string text)
    {
        m_objects.push_back(std::move(text));
        return FirstFree + static_cast<int>(m_objects.size()) - 1;
    }
    int stream(const std::string& bytes, const std::string& entries = "")
    {
        return object("<< " + entries + " /Length " + std::to_string(bytes.size()) + " >>\nstream\n" + bytes
            + "\nendstream");
    }
    static std::string reference(int number) { return std::to_string(number) + " 0 R"; }

    /// Adds a page; `entries` of its dictionary may replace the usual ones.
    int page(const std::string& content, const std::string& entries = "")
    {
        const std::string box = entries.find("/MediaBox") == entries.npos ? " /MediaBox [0 0 612 792]" : "";
        const int number = object("<< /Type /Page /Parent 2 0 R /Resources 3 0 R /Contents "
            + reference(stream(content)) + box + " " + entries + " >>");
        m_pages.push_back(number);
        return number;
    }

    void fonts(const std::string& entries) { m_fonts += entries; }
    /// Other entries of every page's resource dictionary.
    void resources(const std::string& entries) { m_resources += entries; }
    void catalog(const std::string& entries) { m_catalog += entries; }
    void info(const std::string& entries) { m_info += entries; }

    std::string bytes() const
    {
        std::string kids;
        for (const int number : m_pages)
            kids += reference(number) + " ";
        std::vector<std::string> objects {
            "<< /Type /Catalog /Pages 2 0 R " + m_catalog + " >>",
            "<< /Type /Pages /Count " + std::to_string(m_pages.size()) + " /Kids [" + kids + "] >>",
            "<< /Font << /F1 4 0 R /F2 5 0 R " + m_fonts + " >> " + m_resources + " >>",
            "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>",
            "<< /Type /Font /Subtype /Type1 /BaseFont /Courier /Encoding /WinAnsiEncoding >>",
            "<< " + m_info + " >>",
        };
        objects.insert(objects.end(), m_objects.begin(), m_objects.end());
        return written(objects);
    }
    Data data() const { return Data::adopt(bytes()); }

private:
    static constexpr int FirstFree = 7;

    static std::string written(const std::vector<std::string>& objects)
    {
        std::string file = "%PDF-1.7\n";
        std::string table = "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
        for (std::size_t index = 0; index < objects.size(); ++index) {
            char row[32];
            std::snprintf(row, sizeof row, "%010zu 00000 n \n", file.size());
            table += row;
            file += std::to_string(index + 1) + " 0 obj\n" + objects[index] + "\nendobj\n";
        }
        const std::string start = std::to_string(file.size());
        return file + table + "trailer\n<< /Root 1 0 R /Info 6 0 R /Size "
            + std::to_string(objects.size() + 1) + " >>\nstartxref\n" + start + "\n%%EOF\n";
    }

    std::vector<std::string> m_objects;
    std::vector<int> m_pages;
    std::string m_fonts;
    std::string m_resources;
    std::string m_catalog;
    std::string m_info;
};

} // namespace caddis
