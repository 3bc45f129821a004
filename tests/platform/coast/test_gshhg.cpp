#include <gtest/gtest.h>

#include <filesystem>

#include "platform/coast/gshhg_reader.h"
#include "support/temp_dir.h"

using namespace orv;

namespace {

// Even-odd test against a line that closes on itself.
bool insideClosed(const coast::Line& l, LocPosition p) {
    const auto& v = l.points;
    if (v.size() < 4 || v.front().lat != v.back().lat || v.front().lon != v.back().lon)
        return false;
    bool in = false;
    for (std::size_t i = 0, j = v.size() - 1; i < v.size(); j = i++)
        if ((v[i].lat > p.lat) != (v[j].lat > p.lat) &&
            p.lon < (v[j].lon - v[i].lon) * (p.lat - v[i].lat) / (v[j].lat - v[i].lat) + v[i].lon)
            in = !in;
    return in;
}

int shoresAround(const std::vector<coast::Line>& lines, LocPosition p) {
    int n = 0;
    for (const coast::Line& l : lines)
        n += insideClosed(l, p) ? 1 : 0;
    return n;
}

} // namespace

// The real files of gmt-gshhg-low: Corsica, whole inside one bin, is an
// outline around its middle; the sea west of it lies in no outline; every
// point is on the globe. A missing file or folder gives nothing.
TEST(Gshhg, IslandAndOpenSeaAndMissingFiles) {
    const auto file = coast::defaultFolder() / "binned_GSHHS_c.nc";
    ASSERT_TRUE(std::filesystem::exists(file)) << "gmt-gshhg-low is not installed";
    const auto lines = coast::readBinned(file);
    ASSERT_GT(lines.size(), 100u);
    for (const coast::Line& l : lines)
        for (const LocPosition& p : l.points) {
            ASSERT_GE(p.lat, -90.0);
            ASSERT_LE(p.lat, 90.0);
            ASSERT_GE(p.lon, -180.0);
            ASSERT_LE(p.lon, 180.0);
        }
    EXPECT_EQ(shoresAround(lines, {42.15, 9.1}), 1);  // Corsica
    EXPECT_EQ(shoresAround(lines, {42.0, 6.0}), 0);   // Gulf of Lion, open sea
    EXPECT_EQ(shoresAround(lines, {-21.1, 55.5}), 1); // Réunion

    const auto all = coast::readFolder(coast::defaultFolder(), 'l');
    EXPECT_GT(all.size(), lines.size());

    test::TempDir dir;
    EXPECT_TRUE(coast::readBinned(dir.path() / "binned_GSHHS_c.nc").empty());
    EXPECT_TRUE(coast::readFolder(dir.path()).empty());
    std::filesystem::copy_file(file, dir.path() / "binned_border_l.nc");
    EXPECT_TRUE(coast::readFolder(dir.path()).empty());
}
