#pragma once

#include <optional>
#include <string>
#include <utility>

namespace orv {

// Why an input was refused: a text number of the language table, the name of
// the entry field that should get the focus, and optional free text for the
// cases the table has no row for (a file name, a server's own message).
struct Failure {
    int text = 0;
    std::string field;
    std::string detail;
};

// A value or the reason there is none. Input errors travel as values; only
// file, database and device failures are thrown.
template <class T> class Result {
public:
    Result(T value) : value_(std::move(value)) {}
    Result(Failure failure) : failure_(std::move(failure)) {}

    bool ok() const { return value_.has_value(); }
    explicit operator bool() const { return ok(); }
    const T& value() const& { return *value_; }
    T& value() & { return *value_; }
    T&& value() && { return std::move(*value_); }
    const T& operator*() const { return *value_; }
    const T* operator->() const { return &*value_; }
    const Failure& failure() const { return failure_; }

private:
    std::optional<T> value_;
    Failure failure_;
};

// Result of an operation that yields nothing but may be refused.
struct Done {};
using Status = Result<Done>;
inline Status okStatus() { return Done{}; }
inline Failure refuse(int text, std::string field = {}, std::string detail = {}) {
    return Failure{text, std::move(field), std::move(detail)};
}

} // namespace orv
