#include "platform/linux/LinuxPlatform.h"

#include "platform/linux/LinuxHotKeys.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QStandardPaths>

namespace taliro {

namespace {

std::string resourcesFolder() {
    return QCoreApplication::applicationDirPath().toStdString() + "/Resources";
}

std::string rendererPath() {
    return resourcesFolder() + "/taliro-renderer";
}

/// Where the desktop's programs share their thumbnails.
std::string thumbnailFolder() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation).toStdString() +
           "/thumbnails";
}

} // namespace

LinuxPlatform::LinuxPlatform(Build const& build)
    : m_x(QGuiApplication::platformName() == QLatin1String("xcb") ? X11Connection::open() : nullptr),
      m_standardFolders(m_fileManager),
      m_desktopPlaces(m_directoryEvents, m_fileManager),
      m_keyboardLayout(m_keyboard),
      m_hotKeys(makeHotKeys(m_keyboard, m_keyboardLayout)),
      m_loginItems(QCoreApplication::applicationFilePath().toStdString()),
      m_metadataQuery(m_mainQueue, m_directoryEvents, m_fileManager, m_standardFolders),
      m_pointerEvents(m_x.get()),
      m_screens(m_x.get()),
      m_shell(resourcesFolder()),
      m_statusBar(m_x.get(), m_pointerEvents, m_screens),
      m_systemShortcuts(m_keyboard, m_keyboardLayout),
      m_previews(m_mainQueue, m_typeCatalog,
                 {.renderer = rendererPath(), .player = resourcesFolder() + "/taliro-player"}),
      m_thumbnailer(m_mainQueue, m_typeCatalog,
                    {.storeFolder = thumbnailFolder(), .renderer = rendererPath()}),
      m_userDefaults(PlistUserDefaults::standardPath()),
      m_softwareUpdate(m_userDefaults, m_mainQueue, build.updateFeed, build.version),
      m_volumes(m_fileManager),
      m_windowManager(m_x.get()),
      platform{
          .alerts = m_alerts,
          .bookmarks = m_bookmarks,
          .colorScheme = m_colorScheme,
          .desktopPlaces = m_desktopPlaces,
          .directoryEvents = m_directoryEvents,
          .directSave = m_directSave,
          .downloads = m_downloads,
          .fileManager = m_fileManager,
          .fileOperations = m_fileOperations,
          .hotKeys = *m_hotKeys,
          .imageCodec = m_imageCodec,
          .keyboardLayout = m_keyboardLayout,
          .loginItems = m_loginItems,
          .mainQueue = m_mainQueue,
          .metadataQuery = m_metadataQuery,
          .newFiles = m_newFiles,
          .openRequests = m_openRequests,
          .pointerEvents = m_pointerEvents,
          .previews = m_previews,
          .propertyLists = m_propertyLists,
          .screens = m_screens,
          .scriptInterpreter = m_scriptInterpreter,
          .shell = m_shell,
          .softwareUpdate = m_softwareUpdate,
          .standardFolders = m_standardFolders,
          .statusBar = m_statusBar,
          .systemShortcuts = m_systemShortcuts,
          .thumbnailer = m_thumbnailer,
          .typeCatalog = m_typeCatalog,
          .userDefaults = m_userDefaults,
          .volumes = m_volumes,
          .windowManager = m_windowManager,
          .workspace = m_workspace,
      } {}

} // namespace taliro
