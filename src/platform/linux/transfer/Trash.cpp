#include "platform/linux/transfer/Trash.h"

#include <filesystem>
#include <gio/gio.h>
#include <memory>

namespace taliro::transfer {

namespace {

std::errc errorOf(GError const& error) {
    switch (error.code) {
    case G_IO_ERROR_NOT_FOUND:
        return std::errc::no_such_file_or_directory;
    case G_IO_ERROR_NOT_SUPPORTED:
        return std::errc::operation_not_supported;
    case G_IO_ERROR_NO_SPACE:
        return std::errc::no_space_on_device;
    case G_IO_ERROR_READ_ONLY:
        return std::errc::read_only_file_system;
    case G_IO_ERROR_PERMISSION_DENIED:
        return std::errc::permission_denied;
    default:
        return std::errc::io_error;
    }
}

/// "Trash" in the user's data; ".Trash-1000" or ".Trash/1000" on other volumes.
bool isTrash(std::filesystem::path const& folder) {
    auto const name = folder.filename().string();
    return name == "Trash" || name.starts_with(".Trash-") || folder.parent_path().filename() == ".Trash";
}

} // namespace

Result trashItem(std::string const& item) {
    std::unique_ptr<GFile, decltype(&g_object_unref)> const file(g_file_new_for_path(item.c_str()),
                                                                 &g_object_unref);
    GError* raw = nullptr;
    if (g_file_trash(file.get(), nullptr, &raw))
        return {};
    std::unique_ptr<GError, decltype(&g_error_free)> const error(raw, &g_error_free);
    return std::unexpected(errorOf(*error));
}

void forgetTrashed(std::string const& item) {
    std::filesystem::path const path(item);
    auto const files = path.parent_path();
    auto const trash = files.parent_path();
    std::error_code error;
    bool const wasTrashed = files.filename() == "files" && isTrash(trash);
    if (!wasTrashed || std::filesystem::exists(std::filesystem::symlink_status(path, error)))
        return; // Or there is another of that name by now.
    // A note that stays is of nothing, and other programs pass over it.
    std::filesystem::remove(trash / "info" / (path.filename().string() + ".trashinfo"), error);
}

} // namespace taliro::transfer
