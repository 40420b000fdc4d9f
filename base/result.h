#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

// What may fail gives its value, or says why there is none. Values. Any thread.

namespace base {

/// Why something failed, for a person: "cannot write "a.ini": No space left on device".
struct Failure
{
    std::string message;
};

/// A value, or why there is none. Converts from both, so that a function returns either as it is.
template <typename T> class [[nodiscard]] Result
{
public:
    Result(T value) : m_content(std::move(value)) {}

    Result(Failure failure) : m_content(std::move(failure)) {}

    /// @return whether there is a value.
    explicit operator bool() const { return std::holds_alternative<T>(m_content); }

    // Only when there is a value.
    T& operator*() & { return std::get<T>(m_content); }

    const T& operator*() const& { return std::get<T>(m_content); }

    T&& operator*() && { return std::get<T>(std::move(m_content)); }

    T* operator->() { return &std::get<T>(m_content); }

    const T* operator->() const { return &std::get<T>(m_content); }

    /// Only when there is no value.
    const std::string& Message() const { return std::get<Failure>(m_content).message; }

private:
    std::variant<T, Failure> m_content;
};

/// Done, or why not: `return {};` says that it is done.
template <> class [[nodiscard]] Result<void>
{
public:
    Result() = default;

    Result(Failure failure) : m_failure(std::move(failure)) {}

    /// @return whether it is done.
    explicit operator bool() const { return !m_failure; }

    /// Only when it is not done.
    const std::string& Message() const { return m_failure.value().message; }

private:
    std::optional<Failure> m_failure;
};

} // namespace base
