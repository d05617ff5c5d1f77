#include "Quillary/Keyboard/X11Modifiers.h"

#include <algorithm>
#include <cstdlib>
#include <initializer_list>
#include <memory>

namespace quillary {

namespace {

using Modifiers = KeyShortcut::Modifiers;

// Numbers of <X11/keysymdef.h>.
constexpr xcb_keysym_t altLeft = 0xffe9;
constexpr xcb_keysym_t altRight = 0xffea;
constexpr xcb_keysym_t superLeft = 0xffeb;
constexpr xcb_keysym_t superRight = 0xffec;
constexpr xcb_keysym_t numLock = 0xff7f;
constexpr xcb_keysym_t scrollLock = 0xff14;

constexpr int modifierCount = 8;

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};

template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;

/// The symbols that a key has on any of its levels.
class KeySymbols {
public:
    explicit KeySymbols(xcb_connection_t* connection) {
        const xcb_setup_t* const setup = xcb_get_setup(connection);
        m_first = setup->min_keycode;
        const auto count = static_cast<quint8>(setup->max_keycode - setup->min_keycode + 1);
        m_reply.reset(
            xcb_get_keyboard_mapping_reply(connection, xcb_get_keyboard_mapping(connection, m_first, count), nullptr));
    }

    explicit operator bool() const { return m_reply != nullptr; }

    bool has(xcb_keycode_t keyCode, xcb_keysym_t symbol) const {
        const int perKey = m_reply->keysyms_per_keycode;
        const int start = (keyCode - m_first) * perKey;
        if (start < 0 || start + perKey > xcb_get_keyboard_mapping_keysyms_length(m_reply.get())) {
            return false;
        }
        const xcb_keysym_t* const symbols = xcb_get_keyboard_mapping_keysyms(m_reply.get());
        return std::find(symbols + start, symbols + start + perKey, symbol) != symbols + start + perKey;
    }

private:
    xcb_keycode_t m_first = 0;
    ReplyPointer<xcb_get_keyboard_mapping_reply_t> m_reply;
};

} // namespace

X11Modifiers X11Modifiers::read(xcb_connection_t* connection) {
    const ReplyPointer<xcb_get_modifier_mapping_reply_t> mapping(
        xcb_get_modifier_mapping_reply(connection, xcb_get_modifier_mapping(connection), nullptr));
    const KeySymbols symbols(connection);
    if (mapping == nullptr || !symbols) {
        return {};
    }
    const xcb_keycode_t* const keys = xcb_get_modifier_mapping_keycodes(mapping.get());
    const int perModifier = mapping->keycodes_per_modifier;
    // The first modifier that one of the symbols' keys sets.
    const auto maskOf = [&](std::initializer_list<xcb_keysym_t> wanted, quint16 usual) {
        for (int i = 0; i < modifierCount * perModifier; ++i) {
            for (const xcb_keysym_t symbol : wanted) {
                if (keys[i] != 0 && symbols.has(keys[i], symbol)) {
                    return static_cast<quint16>(1U << (i / perModifier));
                }
            }
        }
        return usual;
    };
    X11Modifiers modifiers;
    modifiers.m_alt = maskOf({altLeft, altRight}, XCB_MOD_MASK_1);
    modifiers.m_super = maskOf({superLeft, superRight}, XCB_MOD_MASK_4);
    modifiers.m_numLock = maskOf({numLock}, 0);
    modifiers.m_scrollLock = maskOf({scrollLock}, 0);
    return modifiers;
}

quint16 X11Modifiers::mask(KeyShortcut::Modifiers modifiers) const {
    quint16 mask = 0;
    const auto add = [&](Modifiers modifier, quint16 bits) {
        if (modifiers.contains(modifier)) {
            mask |= bits;
        }
    };
    add(Modifiers::command, XCB_MOD_MASK_CONTROL);
    add(Modifiers::shift, XCB_MOD_MASK_SHIFT);
    add(Modifiers::option, m_alt);
    add(Modifiers::control, m_super);
    return mask;
}

std::vector<quint16> X11Modifiers::lockVariants() const {
    std::vector<quint16> variants{0};
    for (const quint16 lock : {static_cast<quint16>(XCB_MOD_MASK_LOCK), m_numLock, m_scrollLock}) {
        const std::size_t count = lock == 0 ? 0 : variants.size();
        for (std::size_t i = 0; i < count; ++i) {
            variants.push_back(variants[i] | lock);
        }
    }
    return variants;
}

} // namespace quillary
