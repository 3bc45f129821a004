#include "core/util/pdf_writer.h"

#include <cstdio>
#include <sstream>

#include "core/util/text.h"

namespace orv::print {
namespace {

std::string num(double v) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "%.2f", v);
    return buf;
}

// A PDF string literal of Windows-1252 bytes: the delimiters escaped, bytes
// outside printable ASCII as octal, so the stream stays plain ASCII.
std::string literal(const std::string& utf8) {
    std::string out = "(";
    for (const unsigned char c : text::utf8ToCp1252(utf8)) {
        if (c == '(' || c == ')' || c == '\\') {
            out += '\\';
            out += static_cast<char>(c);
        } else if (c < 0x20 || c > 0x7E) {
            char buf[8];
            std::snprintf(buf, sizeof buf, "\\%03o", c);
            out += buf;
        } else {
            out += static_cast<char>(c);
        }
    }
    return out + ")";
}

std::string content(const Page& page, double height) {
    std::ostringstream s;
    if (!page.rules.empty()) {
        s << "0.5 w\n";
        for (const Rule& r : page.rules)
            s << num(r.x1) << ' ' << num(height - r.y1) << " m " << num(r.x2) << ' '
              << num(height - r.y2) << " l S\n";
    }
    for (const Text& t : page.texts) {
        s << "BT /" << (t.bold ? "F2 " : "F1 ") << num(t.size) << " Tf " << num(t.x) << ' '
          << num(height - t.y) << " Td " << literal(t.text) << " Tj ET\n";
    }
    return s.str();
}

} // namespace

std::string writePdf(const Document& doc) {
    // Objects: 1 catalog, 2 page tree, 3 and 4 the fonts, 5 the info, then
    // a page and its content stream for each page.
    std::vector<std::string> objects;
    const std::size_t n = doc.pages.size();
    std::string kids;
    for (std::size_t i = 0; i < n; ++i)
        kids += std::to_string(6 + 2 * i) + " 0 R ";
    objects.push_back("<< /Type /Catalog /Pages 2 0 R >>");
    objects.push_back("<< /Type /Pages /Kids [" + kids + "] /Count " + std::to_string(n) + " >>");
    for (const char* face : {"Courier", "Courier-Bold"})
        objects.push_back(std::string("<< /Type /Font /Subtype /Type1 /BaseFont /") + face +
                          " /Encoding /WinAnsiEncoding >>");
    objects.push_back("<< /Title " + literal(doc.title) + " /Producer (OrvantaContest) >>");
    for (std::size_t i = 0; i < n; ++i) {
        objects.push_back("<< /Type /Page /Parent 2 0 R /MediaBox [0 0 " + num(doc.width) + " " +
                          num(doc.height) +
                          "] /Resources << /Font << /F1 3 0 R /F2 4 0 R >> >> /Contents " +
                          std::to_string(7 + 2 * i) + " 0 R >>");
        const std::string c = content(doc.pages[i], doc.height);
        objects.push_back("<< /Length " + std::to_string(c.size()) + " >>\nstream\n" + c +
                          "endstream");
    }

    std::string out = "%PDF-1.4\n%\xE2\xE3\xCF\xD3\n";
    std::vector<std::size_t> offsets;
    for (std::size_t i = 0; i < objects.size(); ++i) {
        offsets.push_back(out.size());
        out += std::to_string(i + 1) + " 0 obj\n" + objects[i] + "\nendobj\n";
    }
    const std::size_t xref = out.size();
    out += "xref\n0 " + std::to_string(objects.size() + 1) + "\n0000000000 65535 f \n";
    for (const std::size_t o : offsets) {
        char buf[24];
        std::snprintf(buf, sizeof buf, "%010zu 00000 n \n", o);
        out += buf;
    }
    out += "trailer\n<< /Size " + std::to_string(objects.size() + 1) +
           " /Root 1 0 R /Info 5 0 R >>\nstartxref\n" + std::to_string(xref) + "\n%%EOF\n";
    return out;
}

} // namespace orv::print
