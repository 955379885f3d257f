#include "platform/linux/LinuxPlatform.h"

#include <QCoreApplication>
#include <QGuiApplication>

namespace taliro {

LinuxPlatform::LinuxPlatform(Build const& build)
    : m_x(QGuiApplication::platformName() == QLatin1String("xcb") ? X11Connection::open() : nullptr),
      m_loginItems(QCoreApplication::applicationFilePath().toStdString()),
      m_pointerEvents(m_x.get()),
      m_shell(QCoreApplication::applicationDirPath().toStdString() + "/Resources"),
      m_statusBar(m_x.get(), m_pointerEvents),
      m_userDefaults(PlistUserDefaults::standardPath()),
      m_softwareUpdate(m_userDefaults, m_mainQueue, build.updateFeed, build.version),
      m_windowManager(m_x.get()),
      platform{
          .alerts = m_alerts,
          .bookmarks = m_bookmarks,
          .colorScheme = m_colorScheme,
          .desktopPlaces = m_desktopPlaces,
          .directoryEvents = m_directoryEvents,
          .fileManager = m_fileManager,
          .loginItems = m_loginItems,
          .mainQueue = m_mainQueue,
          .metadataQuery = m_metadataQuery,
          .openRequests = m_openRequests,
          .pointerEvents = m_pointerEvents,
          .propertyLists = m_propertyLists,
          .screens = m_screens,
          .scriptInterpreter = m_scriptInterpreter,
          .shell = m_shell,
          .softwareUpdate = m_softwareUpdate,
          .standardFolders = m_standardFolders,
          .statusBar = m_statusBar,
          .typeCatalog = m_typeCatalog,
          .userDefaults = m_userDefaults,
          .volumes = m_volumes,
          .windowManager = m_windowManager,
          .workspace = m_workspace,
      } {}

} // namespace taliro
