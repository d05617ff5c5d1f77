#pragma once

#include <QLocale>
#include <QString>

namespace quillary {

/// The locale of all date texts and orders of names, one for the process, as ICU names it: the language of the
/// interface, and behind an underscore the user's region if there is one ("it_CH"). Safe in every thread.
QString interfaceLocale();

/// The one for a user with these settings.
QString interfaceLocaleOf(const QLocale& user);

/// Puts another locale in its place, as a test does.
void setInterfaceLocale(const QString& name);

} // namespace quillary
