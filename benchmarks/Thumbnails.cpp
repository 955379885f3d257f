#include "Comparison.h"

#include "platform/Platform.h"
#include "platform/linux/QtMainQueue.h"
#include "platform/linux/ThumbnailService.h"
#include "platform/linux/ThumbnailStore.h"
#include "support/MixedFiles.h"
#include "support/PrivateBus.h"

#include <QCoreApplication>
#include <QImageReader>

#include <gio/gio.h>

#include <cstdio>
#include <memory>
#include <set>

namespace taliro::bench {

namespace {

constexpr int photoCount = 48;
constexpr QSize photoSize(3000, 2000);
constexpr int mixedCount = 2000;
constexpr int pixels = 128;
constexpr int rounds = 5;
constexpr int mixedRounds = 3;

using Paths = std::vector<std::string>;

struct Files {
    Paths paths;
    std::vector<char const*> mimeTypes;
};

/// Photos as cameras make them: noise takes as long to decode as leaves and sand do.
Files makePhotos(testing::TemporaryFolder const& folder) {
    Files files;
    auto image = testing::landscape(photoSize.width(), photoSize.height());
    std::uint32_t noise = 1;
    for (int i = 0; i < photoCount; ++i) {
        for (int y = 0; y < image.height(); ++y)
            for (auto *pixel = reinterpret_cast<QRgb*>(image.scanLine(y)), *end = pixel + image.width();
                 pixel != end; ++pixel) {
                noise = noise * 1664525 + 1013904223;
                *pixel ^= noise >> 29;
            }
        auto const path = folder.write("photo " + std::to_string(i) + ".jpg", testing::encoded(image, "jpg"));
        testing::makeOld(path);
        files.paths.push_back(path.string());
        files.mimeTypes.push_back("image/jpeg");
    }
    return files;
}

/// Without the bombs: the peer unpacks each for a quarter of a minute, and the rest would not be seen beside
/// that.
Files makeMixed(testing::TemporaryFolder const& folder) {
    Files files;
    for (auto const& file : testing::makeMixedFiles(folder, mixedCount)) {
        if (file.isBomb)
            continue;
        files.paths.push_back(file.path.string());
        files.mimeTypes.push_back(file.mimeType);
    }
    return files;
}

/// Thumbnails for all, as if each were in sight.
std::size_t makeAll(ThumbnailService& service, Paths const& paths) {
    std::size_t made = 0;
    std::size_t answers = 0;
    std::vector<Subscription> requests;
    for (auto const& path : paths)
        requests.push_back(
            service.request({Url::file(path), pixels, pixels}, [&](std::optional<Picture> const& picture) {
                ++answers;
                made += picture ? 1 : 0;
            }));
    while (answers < paths.size())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    return made;
}

/// The plainest way: one after another, shrunk while decoding, kept as the standard says.
std::size_t makeOneByOne(Paths const& paths, std::string const& store) {
    std::size_t made = 0;
    for (auto const& path : paths) {
        QImageReader reader(QString::fromStdString(path));
        reader.setScaledSize(reader.size().scaled(pixels, pixels, Qt::KeepAspectRatio));
        auto const image = reader.read();
        if (auto const file = FileStamp::of(path); file && !image.isNull()) {
            ThumbnailStore(store).store(*file, image, pixels);
            ++made;
        }
    }
    return made;
}

std::size_t readAll(Paths const& paths, std::string const& store) {
    return static_cast<std::size_t>(std::ranges::count_if(paths, [&](std::string const& path) {
        auto const file = FileStamp::of(path);
        return file && ThumbnailStore(store).find(*file, pixels);
    }));
}

/// The thumbnail service that Thunar and others ask, on a bus of its own.
class Tumbler {
public:
    Tumbler() {
        auto const& bus = testing::PrivateBus::shared();
        if (!bus.isRunning())
            return;
        m_bus = g_dbus_connection_new_for_address_sync(
            std::getenv("DBUS_SESSION_BUS_ADDRESS"),
            static_cast<GDBusConnectionFlags>(G_DBUS_CONNECTION_FLAGS_AUTHENTICATION_CLIENT |
                                              G_DBUS_CONNECTION_FLAGS_MESSAGE_BUS_CONNECTION),
            nullptr, nullptr, nullptr);
        if (!m_bus)
            return;
        for (char const* signal : {"Ready", "Finished"})
            g_dbus_connection_signal_subscribe(m_bus, nullptr, interface, signal, path, nullptr,
                                               G_DBUS_SIGNAL_FLAGS_NONE, &Tumbler::hear, this, nullptr);
        auto* const answer = call("GetFlavors", nullptr, "(as)");
        m_isThere = answer != nullptr;
        if (answer)
            g_variant_unref(answer);
    }
    ~Tumbler() { g_clear_object(&m_bus); }
    Tumbler(Tumbler const&) = delete;
    Tumbler& operator=(Tumbler const&) = delete;

    bool isThere() const { return m_isThere; }

    std::size_t makeAll(Files const& files) {
        GVariantBuilder uris;
        GVariantBuilder types;
        g_variant_builder_init(&uris, G_VARIANT_TYPE("as"));
        g_variant_builder_init(&types, G_VARIANT_TYPE("as"));
        for (std::size_t i = 0; i < files.paths.size(); ++i) {
            g_variant_builder_add(&uris, "s", FileStamp::of(files.paths[i])->uri.c_str());
            g_variant_builder_add(&types, "s", files.mimeTypes[i]);
        }
        m_ready.clear();
        auto* const answer =
            call("Queue", g_variant_new("(asasssu)", &uris, &types, "normal", "foreground", 0U), "(u)");
        if (!answer)
            return 0;
        guint32 handle = 0;
        g_variant_get(answer, "(u)", &handle);
        g_variant_unref(answer);
        while (!m_finished.contains(handle))
            g_main_context_iteration(nullptr, TRUE);
        return m_ready.size();
    }

private:
    static constexpr char interface[] = "org.freedesktop.thumbnails.Thumbnailer1";
    static constexpr char path[] = "/org/freedesktop/thumbnails/Thumbnailer1";

    GVariant* call(char const* method, GVariant* arguments, char const* type) {
        return g_dbus_connection_call_sync(m_bus, interface, path, interface, method, arguments,
                                           G_VARIANT_TYPE(type), G_DBUS_CALL_FLAGS_NONE, 30000, nullptr,
                                           nullptr);
    }
    static void hear(GDBusConnection*, char const*, char const*, char const*, char const* signal,
                     GVariant* values, gpointer self) {
        auto& tumbler = *static_cast<Tumbler*>(self);
        guint32 handle = 0;
        if (std::string_view(signal) == "Finished") {
            g_variant_get(values, "(u)", &handle);
            tumbler.m_finished.insert(handle);
            return;
        }
        GVariantIter* uris = nullptr;
        char const* uri = nullptr;
        g_variant_get(values, "(uas)", &handle, &uris);
        while (g_variant_iter_next(uris, "&s", &uri))
            tumbler.m_ready.insert(uri);
        g_variant_iter_free(uris);
    }

    GDBusConnection* m_bus = nullptr;
    bool m_isThere = false;
    std::set<guint32> m_finished;
    std::set<std::string> m_ready;
};

class Measurement {
public:
    Measurement() {
        if (!m_tumbler.isThere())
            std::fprintf(stderr, "tumblerd is not installed and left out\n");
    }

    bool photos() {
        auto const files = makePhotos(m_folder);
        auto service = makeService({});
        std::vector<Contender> const plain{{"QImageReader, one by one", emptied(m_plainStore, [&] {
                                                return makeOneByOne(files.paths, m_plainStore);
                                            })}};
        auto const task = std::to_string(photoCount) + " photos of 6 megapixels, thumbnails ";
        return compareBoth(task, files, *service, plain, false, rounds);
    }
    /// Photos upright and turned, documents, texts, drawings, fonts, and damaged ones of each.
    bool mixed() {
        auto const files = makeMixed(m_folder);
        auto service = makeService(TALIRO_RENDERER);
        auto const task = std::to_string(files.paths.size()) + " files of all kinds, thumbnails ";
        return compareBoth(task, files, *service, {}, true, mixedRounds);
    }

private:
    std::unique_ptr<ThumbnailService> makeService(std::string renderer) {
        auto& platform = Platform::current();
        return std::make_unique<ThumbnailService>(platform.mainQueue, platform.typeCatalog,
                                                  ThumbnailService::Options{.storeFolder = m_ownStore,
                                                                            .renderer = std::move(renderer),
                                                                            .limit = mixedCount});
    }
    static std::function<std::size_t()> emptied(std::string const& folder,
                                                std::function<std::size_t()> make) {
        return [folder, make = std::move(make)] {
            std::filesystem::remove_all(folder);
            return make();
        };
    }
    /// Made for an empty store, and then as they are kept.
    bool compareBoth(std::string const& task, Files const& files, ThumbnailService& service,
                     std::vector<Contender> cold, bool theyDoLess, int rounds) {
        auto const ours = [&] { return makeAll(service, files.paths); };
        auto const theirs = [&] { return m_tumbler.makeAll(files); };
        // It says only that they are there; who shows them reads them.
        auto const theirsRead = [&] {
            m_tumbler.makeAll(files);
            return readAll(files.paths, m_theirStore);
        };
        std::vector<Contender> warm;
        if (m_tumbler.isThere()) {
            cold.push_back({"tumblerd, Thunar's", emptied(m_theirStore, theirs), {}, theyDoLess});
            warm.push_back({"tumblerd, Thunar's", theirsRead, {}, theyDoLess});
        }
        return (cold.empty() || compare(task + "made", {"ours", emptied(m_ownStore, ours)}, cold, rounds)) &&
               (warm.empty() || compare(task + "kept", {"ours", ours}, warm, rounds));
    }

    testing::TemporaryFolder m_folder;
    std::string m_ownStore = (m_folder / "ours").string();
    std::string m_plainStore = (m_folder / "plain").string();
    std::string m_theirStore = std::string(std::getenv("XDG_CACHE_HOME")) + "/thumbnails";
    Tumbler m_tumbler;
};

} // namespace

bool measureThumbnails() {
    return Measurement().photos() && Measurement().mixed();
}

} // namespace taliro::bench
