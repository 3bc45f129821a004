#include <gtest/gtest.h>

#include "core/submission/edi_editor.h"
#include "core/util/file_io.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

std::string bytesOf(std::initializer_list<unsigned char> b) {
    return std::string(b.begin(), b.end());
}

} // namespace

// Opened and saved without a change, a file keeps every byte: line ends and
// code page are the file's, and no line is added at the end.
TEST(EdiEditor, OpenAndSaveKeepEveryByte) {
    const struct {
        const char* name;
        std::string bytes;
        std::string shown;
        bool crlf;
        bool utf8;
    } cases[] = {
        {"export CR LF", "[REG1TEST;1]\r\nPCall=OE1ABC\r\n", "[REG1TEST;1]\nPCall=OE1ABC\n", true,
         false},
        {"LF, last line open", "a\nb", "a\nb", false, false},
        {"Windows-1252", "RName=M\xFCller\r\nGru\xDF", "RName=Müller\nGruß", true, false},
        {"UTF-8", "RName=Müller €\n", "RName=Müller €\n", false, true},
        {"unassigned bytes", bytesOf({'x', 0x81, 0x8D, 0x8F, 0x90, 0x9D, 0xA0, '\r', '\n'}),
         "x\xC2\x81\xC2\x8D\xC2\x8F\xC2\x90\xC2\x9D\xC2\xA0\n", true, false},
        {"empty", "", "", true, false},
    };
    for (const auto& c : cases) {
        const EdiEditorText t = decodeEdiEditor(c.bytes);
        EXPECT_EQ(t.text, c.shown) << c.name;
        EXPECT_EQ(t.crlf, c.crlf) << c.name;
        EXPECT_EQ(t.utf8, c.utf8) << c.name;
        EXPECT_EQ(encodeEdiEditor(t), c.bytes) << c.name;
    }
}

// Typed text: "\n" becomes the file's line end; a character the code page
// lacks makes the file UTF-8 instead of a "?".
TEST(EdiEditor, TypedTextTakesTheFilesLineEndAndCodePage) {
    EXPECT_EQ(encodeEdiEditor({"a\nä", true, false}), "a\r\n\xE4");
    EXPECT_EQ(encodeEdiEditor({"a\nä", false, true}), "a\nä");
    EXPECT_EQ(encodeEdiEditor({"ł?\n", true, false}), "ł?\r\n");
    EXPECT_EQ(encodeEdiEditor({"€?", true, false}), "\x80?");
    // A lone CR ends a line too; it is written back as the file's line end.
    EXPECT_EQ(decodeEdiEditor("a\rb\r\nc").text, "a\nb\nc");
}

TEST(EdiEditor, FilesUpTo65000BytesOpen) {
    test::TempDir dir;
    const struct {
        std::size_t size;
        bool opens;
    } cases[] = {{0, true}, {65000, true}, {65001, false}, {200000, false}};
    for (const auto& c : cases) {
        const auto file = dir / ("f" + std::to_string(c.size) + ".EDI");
        test::writeFile(file, std::string(c.size, 'x'));
        const auto r = loadEdiEditor(file);
        EXPECT_EQ(r.ok(), c.opens) << c.size;
        if (r) {
            EXPECT_EQ(r->text.size(), c.size);
        } else {
            EXPECT_EQ(r.failure().text, 367);
        }
    }
    EXPECT_THROW(loadEdiEditor(dir / "gone.EDI"), fileio::FileError);
}

TEST(EdiEditor, SaveNameAndReplacedFile) {
    const struct {
        std::string chosen;
        const char* saved;
    } cases[] = {
        {"x", "x.EDI"},         {"x.EDI", "x.EDI"},     {"x.edi", "x.edi"},
        {"x.Edi", "x.Edi.EDI"}, {"x.txt", "x.txt.EDI"}, {std::string("x.edi\0", 6), "x.edi"},
    };
    for (const auto& c : cases)
        EXPECT_EQ(ediEditorName(c.chosen).string(), c.saved) << c.chosen;
    test::TempDir dir;
    const auto file = dir / "e.EDI";
    test::writeFile(file, "old text that is longer");
    saveEdiEditor(file, {"new\nlast", true, false});
    EXPECT_EQ(test::readFile(file), "new\r\nlast");
}
