#pragma once

#include <QCheckBox>
#include <QComboBox>

#include <algorithm>
#include <functional>

namespace quillary {

/// Lets a switch show a value of an owner whenever it changes, and gives the owner each choice of the user.
template <typename Owner, typename Get, typename Set, typename Changed>
void bindToggle(QCheckBox* toggle, Owner* owner, Get get, Set set, Changed changed) {
    const auto update = [toggle, owner, get] { toggle->setChecked(std::invoke(get, owner)); };
    QObject::connect(owner, changed, toggle, update);
    QObject::connect(toggle, &QCheckBox::clicked, owner, [owner, set](bool isOn) { std::invoke(set, owner, isOn); });
    update();
}

/// Makes a picker of values in their order under their display names. It shows the value of `get` whenever it changes,
/// by a signal of the owner, and gives `set` each choice of the user, also that of the present value.
template <typename Values, typename Owner, typename Get, typename Set, typename Changed>
QComboBox* makeSettingsPicker(const Values& values, Owner* owner, Get get, Set set, Changed changed, QWidget* parent) {
    constexpr int width = 180;
    auto* const picker = new QComboBox(parent);
    picker->setMinimumWidth(width);
    for (const auto value : values) {
        picker->addItem(displayName(value));
    }
    const auto update = [picker, values, owner, get] {
        const auto at = std::find(values.begin(), values.end(), std::invoke(get, owner));
        picker->setCurrentIndex(static_cast<int>(at - values.begin()));
    };
    QObject::connect(owner, changed, picker, update);
    QObject::connect(picker, &QComboBox::activated, owner, [values, owner, set](int index) {
        std::invoke(set, owner, values[static_cast<std::size_t>(index)]);
    });
    update();
    return picker;
}

} // namespace quillary
