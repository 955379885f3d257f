#pragma once

#include "foundation/Subscription.h"
#include "preferences/PreferencesTab.h"

#include <QWidget>

#include <vector>

class QStackedLayout;

namespace taliro {

class AppSettings;
class FavoritesStore;
class FormSection;
struct Platform;

/// The settings of one tab as a grouped form, 480 by 360 points.
class PreferencesView : public QWidget {
    Q_OBJECT

public:
    PreferencesView(Platform& platform, FavoritesStore& favorites, AppSettings& settings,
                    PreferencesTabSelection& selection, QWidget* parent = nullptr);

private:
    QWidget* makePage(std::vector<QWidget*> const& sections);
    QWidget* makeGeneral();
    void addHotKeyNotice(FormSection& section);
    QWidget* makeAppearance();
    QWidget* makeAdvanced();
    QWidget* makeSidebarSection();

    Platform& m_platform;
    FavoritesStore& m_favorites;
    AppSettings& m_settings;
    QStackedLayout* m_pages;
    std::vector<Subscription> m_subscriptions;
};

} // namespace taliro
