#include "views/TextPreviewPane.h"

#include "foundation/Text.h"
#include "platform/Platform.h"
#include "platform/PreviewService.h"
#include "views/SyntaxHighlighter.h"
#include "views/Theme.h"

#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTextList>
#include <QTextTable>

namespace taliro {

namespace {

constexpr std::size_t mostBytes = 512 * 1024;
/// Laying out one endless line would take as long as a whole book.
constexpr qsizetype longestLine = 2000;

/// A table of a few lines may ask for millions of cells, and quotes for thousands of levels. Such a text is
/// shown as it was written.
bool isTame(QString const& markdown) {
    constexpr qsizetype most = 40; // columns or levels
    return std::ranges::none_of(QStringView(markdown).split(u'\n'), [](QStringView line) {
        return line.count(u'|') > most || line.count(u'>') > most;
    });
}

/// Shows a document without fetching anything that it asks for.
class SealedBrowser : public QTextBrowser {
public:
    using QTextBrowser::QTextBrowser;
    QVariant loadResource(int, QUrl const&) override {
        QImage nothing(1, 1, QImage::Format_ARGB32);
        nothing.fill(Qt::transparent);
        return nothing;
    }
};

void addSpace(QTextBlock const& block) {
    auto format = block.blockFormat();
    bool const isHeading = format.headingLevel() > 0;
    bool const isInList = block.textList();
    format.setTopMargin(isHeading ? 16 : 0);
    format.setBottomMargin(isHeading ? 6 : isInList ? 3 : 9);
    if (!format.hasProperty(QTextFormat::BlockCodeFence))
        format.setLineHeight(125, QTextBlockFormat::ProportionalHeight);
    else
        format.setBottomMargin(0);
    QTextCursor(block).setBlockFormat(format);
}

void tidyTable(QTextTable& table) {
    auto format = table.format();
    format.setBorderCollapse(true);
    format.setBorder(1);
    format.setBorderBrush(colors().line);
    format.setCellPadding(5);
    format.setCellSpacing(0);
    format.setBottomMargin(9);
    table.setFormat(format);
}

/// Gives the document the air that Markdown by itself has not.
void layOut(QTextDocument& document) {
    for (auto* const frame : document.rootFrame()->childFrames())
        if (auto* const table = qobject_cast<QTextTable*>(frame))
            tidyTable(*table);
    for (auto block = document.begin(); block.isValid(); block = block.next())
        if (!QTextCursor(block).currentTable())
            addSpace(block);
}

QString withShortLines(std::string const& utf8) {
    auto const text = QString::fromStdString(utf8);
    QString result;
    result.reserve(text.size());
    for (auto const& line : QStringView(text).split(u'\n')) {
        if (!result.isEmpty() || line.data() != text.data())
            result += u'\n';
        result += line.first(std::min(line.size(), longestLine));
        if (line.size() > longestLine)
            result += u'…';
    }
    return result;
}

} // namespace

TextPreviewPane::TextPreviewPane(Platform& platform, QWidget* parent)
    : QStackedWidget(parent), m_platform(platform) {
    m_plain = new QPlainTextEdit(this);
    m_markdown = new SealedBrowser(this);
    auto fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPixelSize(12);
    m_plain->setFont(fixed);
    m_plain->setTabStopDistance(4 * QFontMetricsF(fixed).horizontalAdvance(u' '));
    m_plain->setReadOnly(true);
    m_plain->document()->setDocumentMargin(12);
    m_plain->setAccessibleName(tr("Text"));
    m_markdown->setOpenLinks(false);
    m_markdown->document()->setDocumentMargin(20);
    m_markdown->setAccessibleName(tr("Document"));
    for (auto* const pane :
         {static_cast<QAbstractScrollArea*>(m_plain), static_cast<QAbstractScrollArea*>(m_markdown)}) {
        pane->setFrameShape(QFrame::NoFrame);
        // Keys belong to the window, which moves on to the next file with them.
        pane->setFocusPolicy(Qt::NoFocus);
        addWidget(pane);
    }
}

void TextPreviewPane::clear() {
    m_request.cancel();
    delete std::exchange(m_highlighter, nullptr);
    m_plain->clear();
    m_markdown->clear();
}

void TextPreviewPane::setFile(Url const& file, bool isMarkdown) {
    clear();
    m_request =
        m_platform.previews.text(file, mostBytes, [=, this](std::optional<TextPreview> const& preview) {
            if (preview)
                show(*preview, file, isMarkdown);
            else
                Q_EMIT failed();
        });
}

void TextPreviewPane::show(TextPreview const& preview, Url const& file, bool isMarkdown) {
    auto const text = withShortLines(preview.text);
    if (isMarkdown && isTame(text)) {
        m_markdown->setFont(Theme::current().font());
        m_markdown->setMarkdown(text);
        layOut(*m_markdown->document());
        setCurrentWidget(m_markdown);
    } else {
        m_plain->setPlainText(text);
        if (auto const* language = languageOf(file.lastPathComponent()))
            m_highlighter = new SyntaxHighlighter(*language, m_plain->document());
        setCurrentWidget(m_plain);
    }
    verticalScrollBar()->setValue(0);
    auto facts = QString::fromStdString(preview.encoding);
    if (preview.truncated)
        facts = tr("%1, the first %2").arg(facts, QString::fromStdString(byteCountText(mostBytes)));
    Q_EMIT described(facts);
}

QScrollBar* TextPreviewPane::verticalScrollBar() const {
    return static_cast<QAbstractScrollArea*>(currentWidget())->verticalScrollBar();
}

void TextPreviewPane::copy() {
    if (currentWidget() == m_plain)
        m_plain->copy();
    else
        m_markdown->copy();
}

} // namespace taliro
