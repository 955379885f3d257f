#include "platform/linux/UpdateWindow.h"

#include "platform/linux/UpdateFeed.h"

#include <QDesktopServices>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace taliro {

namespace {

constexpr int contentWidth = 420;

/// Shows the notes' text and nothing from elsewhere: what a feed says must not fetch pictures.
class NotesBrowser : public QTextBrowser {
public:
    using QTextBrowser::QTextBrowser;
    QVariant loadResource(int, QUrl const&) override { return {}; }
};

} // namespace

UpdateWindow::UpdateWindow() {
    setWindowTitle(tr("Software Update"));
    setWindowRole(QStringLiteral("update"));
    setWindowFlags(Qt::Dialog | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint);
    m_title = new QLabel(this);
    auto headline = m_title->font();
    headline.setWeight(QFont::DemiBold);
    m_title->setFont(headline);
    m_text = new QLabel(this);
    m_text->setWordWrap(true);
    m_text->setTextFormat(Qt::PlainText);
    m_progress = new QProgressBar(this);
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setFixedHeight(6);
    m_progress->setAccessibleName(tr("Checking for updates…"));
    m_notes = new NotesBrowser(this);
    m_notes->setAccessibleName(tr("What is new"));
    m_notes->setOpenLinks(false);
    connect(m_notes, &QTextBrowser::anchorClicked, this, [](QUrl const& address) {
        if (address.scheme() == QLatin1String("https"))
            QDesktopServices::openUrl(address);
    });
    m_notes->setFixedHeight(180);
    m_notes->setFrameShape(QFrame::NoFrame);
    m_notes->document()->setDocumentMargin(10);
    m_notes->document()->setIndentWidth(18);
    m_notes->document()->setDefaultStyleSheet(
        QStringLiteral("h1, h2, h3 { font-size: medium; font-weight: 600; }"));
    m_skip = new QPushButton(tr("Skip This Version"), this);
    m_later = new QPushButton(tr("OK"), this);
    m_open = new QPushButton(tr("Open Download Page"), this);

    auto* buttons = new QHBoxLayout;
    buttons->addWidget(m_skip);
    buttons->addStretch();
    buttons->addWidget(m_later);
    buttons->addWidget(m_open);
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(20, 18, 20, 16);
    rows->setSpacing(10);
    rows->setSizeConstraint(QLayout::SetFixedSize);
    for (auto* row : {static_cast<QWidget*>(m_title), static_cast<QWidget*>(m_text),
                      static_cast<QWidget*>(m_progress), static_cast<QWidget*>(m_notes)}) {
        row->setFixedWidth(contentWidth);
        rows->addWidget(row);
    }
    rows->addLayout(buttons);

    connect(m_later, &QPushButton::clicked, this, &QWidget::close);
    connect(m_skip, &QPushButton::clicked, this, [this] {
        onSkip();
        close();
    });
    connect(m_open, &QPushButton::clicked, this, [this] {
        onOpenPage();
        close();
    });
}

/// What Return presses, and what stands out for it.
void UpdateWindow::setDefault(QPushButton* button) {
    for (auto* one : {m_skip, m_later, m_open})
        one->setDefault(one == button);
}

void UpdateWindow::present(QString const& title, QString const& text) {
    m_title->setText(title);
    m_text->setText(text);
    m_text->setVisible(!text.isEmpty());
    setAccessibleName(title);
    show();
    raise();
    activateWindow();
}

void UpdateWindow::showChecking() {
    m_progress->show();
    m_notes->hide();
    m_skip->hide();
    m_open->hide();
    m_later->setText(tr("Cancel"));
    setDefault(nullptr);
    present(tr("Checking for updates…"), {});
}

void UpdateWindow::showMessage(QString const& title, QString const& text) {
    m_progress->hide();
    m_notes->hide();
    m_skip->hide();
    m_open->hide();
    m_later->setText(tr("OK"));
    setDefault(m_later);
    present(title, text);
}

void UpdateWindow::showRelease(Release const& release, QString const& installed) {
    m_progress->hide();
    m_notes->setHtml(release.notesHtml);
    m_notes->setVisible(!m_notes->toPlainText().trimmed().isEmpty());
    m_skip->show();
    m_open->show();
    setDefault(m_open);
    m_later->setText(tr("Later"));
    present(tr("Taliro %1 is available").arg(release.version), tr("You have %1.").arg(installed));
}

void UpdateWindow::closeEvent(QCloseEvent* event) {
    if (!m_progress->isHidden() && onCancel)
        onCancel();
    QWidget::closeEvent(event);
}

void UpdateWindow::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        close();
    else if ((event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) && m_open->isVisible())
        m_open->click();
    else if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        m_later->click();
    else
        QWidget::keyPressEvent(event);
}

} // namespace taliro
