#pragma once

#include "foundation/Subscription.h"
#include "preferences/PrefsToolbarDelegate.h"

#include <QWidget>

#include <map>

class QAbstractButton;

namespace taliro {

/// The tabs along the top of the preferences window, a symbol over a label each.
class PrefsToolbar : public QWidget {
    Q_OBJECT

public:
    explicit PrefsToolbar(PreferencesTabSelection& selection, QWidget* parent = nullptr);

protected:
    void paintEvent(QPaintEvent*) override;

private:
    PrefsToolbarDelegate m_delegate;
    std::map<PreferencesTab, QAbstractButton*> m_tabs;
    Subscription m_subscription;
};

} // namespace taliro
