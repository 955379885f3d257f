#pragma once

#include "platform/ColorScheme.h"

#include <QDBusMessage>
#include <QObject>

#include <optional>

class QFileSystemWatcher;

namespace taliro {

/// The settings portal's `color-scheme`. Where no portal answers or it has no preference: the GTK settings
/// file, then what the toolkit takes the desktop for.
class PortalColorScheme : public QObject, public ColorScheme {
    Q_OBJECT

public:
    /// Asks the portal without waiting for it; before its answer, the other sources count.
    PortalColorScheme();

    bool isDark() const override { return m_dark; }
    Subscription observe(std::function<void(bool dark)> observer) override {
        return m_observers.add(std::move(observer));
    }

private Q_SLOTS:
    void settingChanged(QDBusMessage const& signal);

private:
    void askPortal();
    void readGtkSettings();
    void update();

    std::optional<bool> m_portal;
    std::optional<bool> m_gtk;
    bool m_toolkitIsDark;
    bool m_dark = false;
    QFileSystemWatcher* m_gtkFiles;
    Observers<bool> m_observers;
};

/// What a GTK `settings.ini` asks for, if anything.
std::optional<bool> prefersDark(QString const& settingsIni);

} // namespace taliro
