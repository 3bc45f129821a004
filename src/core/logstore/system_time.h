#pragma once

#include <string>
#include <string_view>

#include "core/util/datetime.h"
#include "core/util/ports.h"
#include "core/util/result.h"

// Setting the computer's own clock, as contest operators correct it on site.
namespace orv {

// The port to the system clock. A refusal carries the system's own message
// in Failure::detail; nothing has changed then.
class SystemTimeSetter {
public:
    virtual ~SystemTimeSetter() = default;
    virtual Status setSystemTime(const DateTime& localTime) = 0;
};

// Runs `timedatectl set-time 'YYYY-MM-DD HH:MM:SS'` (fork and exec, no
// shell). The program can be replaced, for tests or for systems that set the
// clock another way.
class TimedatectlSetter final : public SystemTimeSetter {
public:
    explicit TimedatectlSetter(std::string program = "timedatectl")
        : program_(std::move(program)) {}
    Status setSystemTime(const DateTime& localTime) override;

private:
    std::string program_;
};

// A time typed as "H:MM" or "H:MM:SS".
std::optional<DateTime> parseTypedTime(std::string_view s);
// A date typed as "D.M.YYYY", "D.M.YY" or "YYYY-MM-DD".
std::optional<DateTime> parseTypedDate(std::string_view s);

enum class ClockPart { Time, Date };

// Enter in the clock field of the log chooser: a bad time is IText(14), a bad
// date IText(13), both with the focus on "Text5"; a good value replaces that
// part of the computer's clock and keeps the other.
Status setComputerClock(SystemTimeSetter& setter, const Clock& clock, ClockPart part,
                        std::string_view typed);

} // namespace orv
