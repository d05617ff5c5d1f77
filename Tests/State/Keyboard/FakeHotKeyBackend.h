#pragma once

#include "Quillary/Keyboard/HotKeyBackend.h"

#include <QStringList>

#include <optional>

namespace quillary::test {

/// What a test sees of a hot key after the controller took its backend.
struct HotKeyRecord {
    /// The combination that is held now.
    std::optional<KeyShortcut> held;
    bool refuses = false;
    int grabs = 0;
};

class FakeHotKeyBackend : public HotKeyBackend {
public:
    explicit FakeHotKeyBackend(HotKeyRecord* record) : m_record(*record) {}

    bool grab(const KeyShortcut& shortcut) override {
        ++m_record.grabs;
        if (!m_record.refuses) {
            m_record.held = shortcut;
        }
        return !m_record.refuses;
    }

    void release() override { m_record.held.reset(); }

private:
    HotKeyRecord& m_record;
};

} // namespace quillary::test
