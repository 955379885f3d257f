#include "platform/linux/LinuxPlatform.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace taliro {

LinuxPlatform::LinuxPlatform()
    : m_x(QGuiApplication::platformName() == QLatin1String("xcb") ? X11Connection::open() : nullptr),
      m_loginItems(QCoreApplication::applicationFilePath().toStdString()),
      m_pointerEvents(m_x.get()),
      m_statusBar(m_x.get(), m_pointerEvents),
      m_userDefaults(PlistUserDefaults::standardPath()),
      m_windowManager(m_x.get()),
      platform{
          .alerts = m_alerts,
          .colorScheme = m_colorScheme,
          .directoryEvents = m_directoryEvents,
          .fileManager = m_fileManager,
          .loginItems = m_loginItems,
          .mainQueue = m_mainQueue,
          .openRequests = m_openRequests,
          .pointerEvents = m_pointerEvents,
          .screens = m_screens,
          .statusBar = m_statusBar,
          .typeCatalog = m_typeCatalog,
          .userDefaults = m_userDefaults,
          .windowManager = m_windowManager,
          .workspace = m_workspace,
      } {}

} // namespace taliro
