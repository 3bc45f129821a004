#include "platform/coast/gshhg_reader.h"

#include <netcdf.h>

#include <cstdint>
#include <optional>

namespace orv::coast {
namespace {

class NcFile {
public:
    explicit NcFile(const std::filesystem::path& p) {
        if (nc_open(p.c_str(), NC_NOWRITE, &id_) != NC_NOERR)
            id_ = -1;
    }
    ~NcFile() {
        if (id_ >= 0)
            nc_close(id_);
    }
    NcFile(const NcFile&) = delete;
    NcFile& operator=(const NcFile&) = delete;
    bool ok() const { return id_ >= 0; }

    // A whole variable as ints; nothing when it is missing.
    std::optional<std::vector<int>> ints(const char* name) const {
        int var = 0;
        if (nc_inq_varid(id_, name, &var) != NC_NOERR)
            return std::nullopt;
        int ndims = 0;
        int dims[NC_MAX_VAR_DIMS];
        if (nc_inq_var(id_, var, nullptr, nullptr, &ndims, dims, nullptr) != NC_NOERR)
            return std::nullopt;
        std::size_t n = 1;
        for (int d = 0; d < ndims; ++d) {
            std::size_t len = 0;
            nc_inq_dimlen(id_, dims[d], &len);
            n *= len;
        }
        std::vector<int> out(n);
        if (n && nc_get_var_int(id_, var, out.data()) != NC_NOERR)
            return std::nullopt;
        return out;
    }

private:
    int id_ = -1;
};

} // namespace

std::filesystem::path defaultFolder() {
    return "/usr/share/gmt-gshhg";
}

std::vector<Line> readBinned(const std::filesystem::path& file) {
    std::vector<Line> out;
    const NcFile f(file);
    if (!f.ok())
        return out;
    const auto binMinutes = f.ints("Bin_size_in_minutes");
    const auto binsX = f.ints("N_bins_in_360_longitude_range");
    const auto firstSeg = f.ints("Id_of_first_segment_in_a_bin");
    const auto segCount = f.ints("N_segments_in_a_bin");
    const auto firstPoint = f.ints("Id_of_first_point_in_a_segment");
    const auto dx = f.ints("Relative_longitude_from_SW_corner_of_bin");
    const auto dy = f.ints("Relative_latitude_from_SW_corner_of_bin");
    // Shorelines pack points and level into one word; borders count apart.
    const auto packed = f.ints("Embedded_npts_levels_exit_entry_for_a_segment");
    const auto counts = f.ints("N_points_for_a_segment");
    const auto levels = f.ints("Hierarchial_level_of_a_segment");
    if (!binMinutes || binMinutes->empty() || !binsX || binsX->empty() || (*binsX)[0] <= 0 ||
        !firstSeg || !segCount || firstSeg->size() != segCount->size() || !firstPoint || !dx ||
        !dy || dx->size() != dy->size() || !(packed || (counts && levels)))
        return out;
    const double bin = (*binMinutes)[0] / 60.0;
    const int nx = (*binsX)[0];
    const double scale = bin / 65535.0;
    for (std::size_t b = 0; b < firstSeg->size(); ++b) {
        // Bins run west to east in rows from the north pole down.
        // East of 180 degrees the bin counts as west of Greenwich.
        double lonSw = static_cast<double>(static_cast<int>(b) % nx) * bin;
        if (lonSw >= 180)
            lonSw -= 360;
        const double latSw = 90.0 - static_cast<double>(static_cast<int>(b) / nx + 1) * bin;
        for (int s = 0; s < (*segCount)[b]; ++s) {
            const auto seg = static_cast<std::size_t>((*firstSeg)[b] + s);
            if (seg >= firstPoint->size())
                return {};
            std::size_t n = 0;
            int level = 1;
            if (packed) {
                if (seg >= packed->size())
                    return {};
                const auto word = static_cast<std::uint32_t>((*packed)[seg]);
                n = word >> 9;
                level = static_cast<int>((word >> 6) & 7u);
            } else {
                if (seg >= counts->size() || seg >= levels->size())
                    return {};
                n = static_cast<std::size_t>((*counts)[seg]);
                level = (*levels)[seg];
            }
            const auto first = static_cast<std::size_t>((*firstPoint)[seg]);
            if (first + n > dx->size())
                return {};
            Line line;
            line.level = level;
            line.points.reserve(n);
            for (std::size_t i = first; i < first + n; ++i) {
                // Offsets are unsigned 16-bit counts stored as shorts.
                const double x = static_cast<std::uint16_t>((*dx)[i]) * scale;
                const double y = static_cast<std::uint16_t>((*dy)[i]) * scale;
                line.points.push_back({latSw + y, lonSw + x});
            }
            out.push_back(std::move(line));
        }
    }
    return out;
}

std::vector<Line> readFolder(const std::filesystem::path& folder, char resolution) {
    const std::string r(1, resolution);
    std::vector<Line> lines = readBinned(folder / ("binned_GSHHS_" + r + ".nc"));
    if (lines.empty())
        return lines;
    for (Line& l : readBinned(folder / ("binned_border_" + r + ".nc")))
        lines.push_back(std::move(l));
    return lines;
}

} // namespace orv::coast
