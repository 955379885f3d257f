#include "platform/linux/transfer/Trash.h"

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

} // namespace taliro::transfer
