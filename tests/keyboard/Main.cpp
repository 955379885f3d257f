#include "keyboard/XServer.h"
#include "views/Theme.h"

#include <QApplication>
#include <gtest/gtest.h>

#include <optional>

namespace {

using namespace taliro;

/// A server and a toolkit for all tests of the process; listing the tests starts neither.
class Desktop : public ::testing::Environment {
public:
    void SetUp() override {
        for (auto const* name :
             {"WAYLAND_DISPLAY", "XDG_CURRENT_DESKTOP", "XDG_SESSION_TYPE", "QT_QPA_PLATFORM"})
            ::unsetenv(name);
        m_server.emplace();
        m_application.emplace(m_argumentCount, m_arguments);
        m_application->setApplicationName(QStringLiteral("Taliro"));
        m_application->setQuitOnLastWindowClosed(false);
        Theme::current().install(*m_application);
    }
    void TearDown() override {
        m_application.reset();
        m_server.reset();
    }

private:
    int m_argumentCount = 1;
    char m_name[16] = "keyboard_tests";
    char* m_arguments[2] = {m_name, nullptr};
    std::optional<taliro::testing::XServer> m_server;
    std::optional<QApplication> m_application;
};

} // namespace

int main(int argc, char** argv) {
    ::testing::InitGoogleTest(&argc, argv);
    ::testing::AddGlobalTestEnvironment(new Desktop);
    return RUN_ALL_TESTS();
}
