#pragma once

#include <string>
#include <vector>

// Pages of a printout as text and rules at fixed places, in points (1/72
// inch) from the top left corner. The window paints them on a printer and
// the PDF writer writes them, so a printout and its PDF are one layout.
// Text is set in a fixed-pitch face: a character is 0.6 of the size wide.
namespace orv::print {

inline constexpr double kCharWidth = 0.6;

struct Text {
    double x = 0, y = 0; // left end of the base line
    double size = 10;
    bool bold = false;
    std::string text; // UTF-8
};

struct Rule {
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0;
};

struct Page {
    std::vector<Text> texts;
    std::vector<Rule> rules;
};

struct Document {
    double width = 842, height = 595; // A4 landscape
    std::string title;
    std::vector<Page> pages;
};

} // namespace orv::print
