#include "KeyboardShortcuts/Recorder.h"

#include "KeyboardShortcuts/KeyboardShortcuts.h"
#include "platform/Platform.h"

#include <QHBoxLayout>

namespace taliro {

Recorder::Recorder(Name name, std::function<void(std::optional<Shortcut> const&)> onChange, QWidget* parent)
    : QWidget(parent),
      m_field(
          new RecorderCocoa(KeyboardShortcuts::shared(), Platform::current().alerts, std::move(name), this)) {
    m_field->onChange = std::move(onChange);
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_field);
    setFocusProxy(m_field);
}

} // namespace taliro
