#pragma once

#include <cassert>
#include <utility>
#include <variant>

namespace quillary {

/// What a function gives that has nothing to give but its success.
struct Done {
    friend bool operator==(Done, Done) = default;
};

/// The value of a function that can fail, or its error. It must be looked at; reading the absent side is a
/// programming error.
template <typename T, typename E>
class [[nodiscard]] Result {
public:
    Result(T value) : m_content(std::in_place_index<0>, std::move(value)) {}

    Result(E error) : m_content(std::in_place_index<1>, std::move(error)) {}

    bool hasValue() const { return m_content.index() == 0; }

    explicit operator bool() const { return hasValue(); }

    const T& value() const& { return get<0>(m_content); }

    T& value() & { return get<0>(m_content); }

    T&& value() && { return std::move(get<0>(m_content)); }

    const T& operator*() const& { return value(); }

    T& operator*() & { return value(); }

    T&& operator*() && { return std::move(*this).value(); }

    const T* operator->() const { return &value(); }

    T* operator->() { return &value(); }

    /// Takes a new value, which can be filled in where it stands.
    T& emplace() { return m_content.template emplace<0>(); }

    const E& error() const& { return get<1>(m_content); }

    E&& error() && { return std::move(get<1>(m_content)); }

private:
    template <std::size_t index, typename Variant>
    static auto&& get(Variant&& content) {
        assert(content.index() == index);
        return *std::get_if<index>(&content);
    }

    std::variant<T, E> m_content;
};

template <typename E>
using Status = Result<Done, E>;

} // namespace quillary
