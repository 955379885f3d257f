#pragma once

#include "foundation/Subscription.h"
#include "views/Overlay.h"

#include <QPointer>
#include <QVariantAnimation>

#include <optional>

class QGraphicsOpacityEffect;
class QLabel;

namespace taliro {

class AutoSelectingTextField;
class NewFolderCoordinator;
class PushButton;
class Url;

/// Asks for the name of a new folder, over its parent, while the coordinator has a request.
class NewFolderPrompt : public Overlay {
public:
    NewFolderPrompt(NewFolderCoordinator& coordinator, QWidget* parent);

protected:
    bool focusNextPrevChild(bool next) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent*) override;

private:
    QWidget* makeCard();
    void change(std::optional<Url> const& folder);
    void setName(std::string const& name);
    void create();
    void cancel();
    void fadeTo(double opacity);
    bool isOnBackdrop(QMouseEvent const& event) const;

    NewFolderCoordinator& m_coordinator;
    AutoSelectingTextField* m_field = nullptr;
    QLabel* m_question = nullptr;
    PushButton* m_cancel = nullptr;
    PushButton* m_create = nullptr;
    QWidget* m_card = nullptr;
    QGraphicsOpacityEffect* m_opacity = nullptr;
    QVariantAnimation m_fade;
    QPointer<QWidget> m_focusBefore;
    bool m_isPressedOutside = false;
    Subscription m_onRequest;
    Subscription m_onName;
};

} // namespace taliro
