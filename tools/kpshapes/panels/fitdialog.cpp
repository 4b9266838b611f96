// SPDX-License-Identifier: MIT
#include "panels/fitdialog.h"

#include "common/text.h"
#include "paint/fitsheet.h"
#include "panels/boxcell.h"
#include "panels/pictureview.h"

#include <QCheckBox>
#include <QDialogButtonBox>
#include <QDragEnterEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QListWidget>
#include <QMimeData>
#include <QProgressBar>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QStyle>
#include <QTableWidget>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int fileColumn = 0;
constexpr int boxColumn = 1;
constexpr int delay = 150; ///< several changes are learnt from at once, in milliseconds
constexpr int pollInterval = 30; ///< between two looks at what the thread does, in milliseconds

QString invitation()
{
    return QStringLiteral("Add two or more drawings of the same outlines, each for a box of other "
                          "proportions, or drop them here.");
}

/** The box that a text names, with any sign of multiplication. */
std::optional<QSizeF> boxFromText(QString const& text)
{
    QString plain = text;
    plain.replace(QChar(0x00d7), QLatin1Char('x'));
    return drawingSource(QStringLiteral("file@") + plain.remove(QLatin1Char(' '))).box;
}

ItemPointer itemOf(Shape const& shape)
{
    return std::make_shared<ShapeItem const>(
        ShapeItem {shape.name, shape.box, shape.fillRule, recordOf(*shape.list), {}, -1});
}

QString summaryOf(FitResult const& result)
{
    int const unclear = result.undecided.size() + result.inexact.size();
    return QStringLiteral("%1 of %2 in %3 decided and exact, tolerance %4")
        .arg(QString::number(result.coordinates - unclear),
            countText(result.coordinates, QStringLiteral("coordinate")),
            countText(static_cast<qint64>(result.shapes.size()), QStringLiteral("outline")),
            numberText(result.tolerance));
}

} // namespace

FitDialog::FitDialog(QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Fit from Drawings"));
    setAcceptDrops(true);
    resize(860, 600);
    auto* const split = new QSplitter(Qt::Horizontal, this);
    split->addWidget(newDrawings());
    split->addWidget(newResult());
    split->setStretchFactor(1, 1);
    split->setChildrenCollapsible(false);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    m_insert = buttons->addButton(QStringLiteral("&Insert"), QDialogButtonBox::AcceptRole);
    m_progress = new QProgressBar(this);
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setFixedWidth(90);
    m_progress->setAccessibleName(QStringLiteral("Progress"));
    m_stop = new QPushButton(QStringLiteral("&Stop"), this);
    m_stop->setAutoDefault(false);
    m_summary = new QLabel(this);
    m_summary->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto* const footer = new QHBoxLayout;
    footer->addWidget(m_progress);
    footer->addWidget(m_stop);
    footer->addWidget(m_summary, 1);
    footer->addWidget(buttons);
    auto* const whole = new QVBoxLayout(this);
    whole->addWidget(split, 1);
    whole->addLayout(footer);
    m_delay.setSingleShot(true);
    m_delay.setInterval(delay);
    m_poll.setInterval(pollInterval);
    connect(&m_delay, &QTimer::timeout, this, &FitDialog::start);
    connect(&m_poll, &QTimer::timeout, this, &FitDialog::poll);
    connect(m_stop, &QPushButton::clicked, this, &FitDialog::stopOrStart);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    showState();
}

FitDialog::~FitDialog() = default;

QWidget* FitDialog::newDrawings()
{
    auto* const part = new QWidget(this);
    m_table = new QTableWidget(0, 2, part);
    m_table->setHorizontalHeaderLabels({QStringLiteral("Drawing"), QStringLiteral("Box")});
    m_table->horizontalHeader()->setSectionResizeMode(fileColumn, QHeaderView::Stretch);
    m_table->horizontalHeader()->setHighlightSections(false);
    m_table->verticalHeader()->hide();
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_table->setTabKeyNavigation(false);
    m_table->setAccessibleName(QStringLiteral("Drawings"));
    m_table->setToolTip(QStringLiteral("A box is that of the picture unless another is entered: "
                                       "240 x 160"));
    m_table->installEventFilter(this);
    auto* const add = new QPushButton(QStringLiteral("&Add Drawings\u2026"), part);
    m_remove = new QPushButton(QStringLiteral("&Remove"), part);
    m_findsEllipses = new QCheckBox(QStringLiteral("Curves may become &ellipses"), part);
    m_findsEllipses->setChecked(true);
    for (QPushButton* const button : {add, m_remove})
        button->setAutoDefault(false);
    auto* const row = new QHBoxLayout;
    row->addWidget(add);
    row->addWidget(m_remove);
    auto* const column = new QVBoxLayout(part);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(m_table, 1);
    column->addLayout(row);
    column->addWidget(m_findsEllipses);
    part->setMinimumWidth(260);
    auto* const shortcut = new QShortcut(QKeySequence(Qt::Key_Delete), m_table);
    shortcut->setContext(Qt::WidgetShortcut);
    connect(shortcut, &QShortcut::activated, this, &FitDialog::removeSelected);
    connect(add, &QPushButton::clicked, this, &FitDialog::chooseFiles);
    connect(m_remove, &QPushButton::clicked, this, &FitDialog::removeSelected);
    connect(m_findsEllipses, &QCheckBox::toggled, this, &FitDialog::scheduleRun);
    connect(m_table, &QTableWidget::itemSelectionChanged, this, &FitDialog::showState);
    connect(m_table, &QTableWidget::cellChanged, this, [this](int line, int column_) {
        if (column_ == boxColumn)
            enterBox(line);
    });
    return part;
}

void FitDialog::enterBox(int row)
{
    QTableWidgetItem& item = *m_table->item(row, boxColumn);
    auto const box = boxFromText(item.text());
    if (!box && !item.text().trimmed().isEmpty()) {
        QSignalBlocker const blocker(m_table);
        QVariant const before = item.data(Qt::UserRole);
        item.setText(before.isValid() ? captionOf(before.toSizeF()) : QString());
    } else {
        item.setData(Qt::UserRole, box ? QVariant(*box) : QVariant());
    }
    scheduleRun();
}

QWidget* FitDialog::newResult()
{
    auto* const split = new QSplitter(Qt::Vertical, this);
    m_picture = new PictureView(invitation(), split);
    m_picture->setAccessibleName(QStringLiteral("Drawings and what was learnt of them"));
    m_list = new QListWidget(split);
    m_list->setAccessibleName(QStringLiteral("What is not decided or not exact"));
    m_list->setUniformItemSizes(true);
    m_list->setAlternatingRowColors(true);
    m_list->setMinimumHeight(60);
    m_list->installEventFilter(this);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 1);
    split->setChildrenCollapsible(false);
    connect(m_list, &QListWidget::itemActivated, this,
        [this](QListWidgetItem const* item) { activate(m_list->row(item)); });
    return split;
}

void FitDialog::addRow(DrawingSource const& source)
{
    QSignalBlocker const blocker(m_table);
    int const row = m_table->rowCount();
    m_table->insertRow(row);
    auto* const file = new QTableWidgetItem(QFileInfo(source.file).fileName());
    file->setData(Qt::UserRole, source.file);
    file->setToolTip(source.file);
    file->setFlags(file->flags() & ~Qt::ItemIsEditable);
    m_table->setItem(row, fileColumn, file);
    auto* const box = new QTableWidgetItem(source.box ? captionOf(*source.box) : QString());
    box->setData(Qt::UserRole, source.box ? QVariant(*source.box) : QVariant());
    m_table->setItem(row, boxColumn, box);
}

void FitDialog::addFiles(QStringList const& files)
{
    for (QString const& file : files) {
        // A file may have an @ in its name.
        bool const isFile = QFileInfo::exists(file);
        if (m_table->rowCount() < greatestCount)
            addRow(isFile ? DrawingSource {file, std::nullopt} : drawingSource(file));
    }
    scheduleRun();
}

void FitDialog::chooseFiles()
{
    addFiles(QFileDialog::getOpenFileNames(this, QStringLiteral("Add Drawings"), QString(),
        QStringLiteral("Drawings (*.svg *.svgz *.xml);;All files (*)")));
}

void FitDialog::removeSelected()
{
    QModelIndexList const rows = m_table->selectionModel()->selectedRows();
    QVector<int> indices;
    for (QModelIndex const& row : rows)
        indices.append(row.row());
    std::sort(indices.begin(), indices.end());
    for (auto row = indices.crbegin(); row != indices.crend(); ++row)
        m_table->removeRow(*row);
    if (!indices.isEmpty())
        scheduleRun();
}

DrawingSource FitDialog::sourceAt(int row) const
{
    QVariant const box = m_table->item(row, boxColumn)->data(Qt::UserRole);
    return {m_table->item(row, fileColumn)->data(Qt::UserRole).toString(),
        box.isValid() ? std::make_optional(box.toSizeF()) : std::nullopt};
}

QVector<DrawingSource> FitDialog::sources() const
{
    QVector<DrawingSource> sources;
    for (int row = 0; row < m_table->rowCount(); ++row)
        sources.append(sourceAt(row));
    return sources;
}

QStringList FitDialog::drawings() const
{
    QStringList texts;
    for (DrawingSource const& source : sources()) {
        texts << (source.box
                ? QStringLiteral("%1@%2x%3")
                      .arg(source.file)
                      .arg(numberText(source.box->width()), numberText(source.box->height()))
                : source.file);
    }
    return texts;
}

Items FitDialog::items() const
{
    Items items;
    if (m_outcome.result) {
        for (Shape const& shape : m_outcome.result->shapes)
            items.push_back(itemOf(shape));
    }
    return items;
}

void FitDialog::scheduleRun()
{
    stop();
    m_outcome = FitOutcome();
    m_place.reset();
    showFindings({});
    m_picture->clear(invitation());
    if (m_table->rowCount() >= 2)
        m_delay.start();
    else
        m_summary->setText(QString());
    showState();
}

void FitDialog::start()
{
    m_isStopped = false;
    m_run = std::make_unique<FitRun>(FitRequest {sources(), m_findsEllipses->isChecked()});
    m_poll.start();
    showState();
}

void FitDialog::stop()
{
    m_delay.stop();
    m_poll.stop();
    m_run.reset();
    m_isStopped = false;
}

void FitDialog::stopOrStart()
{
    if (!isRunning()) {
        start();
        return;
    }
    stop();
    m_isStopped = true;
    m_summary->setText(QStringLiteral("Stopped"));
    showState();
}

void FitDialog::poll()
{
    if (!m_run)
        return;
    if (!m_run->isDone()) {
        m_summary->setText(m_run->stage());
        return;
    }
    m_poll.stop();
    FitOutcome outcome = m_run->takeOutcome();
    m_run.reset();
    take(std::move(outcome));
    Q_EMIT learnt();
}

void FitDialog::take(FitOutcome outcome)
{
    m_outcome = std::move(outcome);
    QVector<FitFinding> findings = findingsOf(m_outcome.diagnostics);
    for (std::size_t i = 0; i < m_outcome.drawings.size(); ++i) {
        QSignalBlocker const blocker(m_table);
        QTableWidgetItem& item = *m_table->item(static_cast<int>(i), boxColumn);
        item.setText(captionOf(m_outcome.drawings[i].box));
        QFont font = m_table->font();
        font.setItalic(!item.data(Qt::UserRole).isValid());
        item.setFont(font);
    }
    if (m_outcome.result) {
        findings += findingsOf(*m_outcome.result);
        m_picture->setPicture(fitSheet(m_outcome.drawings, *m_outcome.result));
        m_summary->setText(summaryOf(*m_outcome.result));
    } else {
        m_picture->clear(QStringLiteral("Nothing could be learnt of these drawings."));
        m_summary->setText(QStringLiteral("Nothing was learnt"));
    }
    showFindings(findings);
    showState();
}

void FitDialog::showFindings(QVector<FitFinding> const& findings)
{
    m_findings = findings;
    m_list->clear();
    QIcon const bad = style()->standardIcon(QStyle::SP_MessageBoxWarning);
    QIcon const other = style()->standardIcon(QStyle::SP_MessageBoxInformation);
    for (FitFinding const& finding : findings) {
        auto* const line = new QListWidgetItem(finding.isBad ? bad : other, finding.text, m_list);
        line->setToolTip(finding.place ? finding.text
                    + QStringLiteral("\nActivate it to see the place once it is inserted.")
                                       : finding.text);
    }
}

void FitDialog::activate(int line)
{
    m_place = m_findings.at(line).place;
    if (!m_place)
        return;
    m_summary->setText(QStringLiteral("Inserted, outline %1 is shown at segment %2, %3")
                           .arg(QString::number(m_place->shape + 1),
                               QString::number(m_place->segment + 1), m_place->letter));
    Q_EMIT jumpTo(m_place->shape, m_place->segment, m_place->letter);
}

void FitDialog::showState()
{
    m_progress->setVisible(isRunning());
    m_stop->setVisible(isRunning() || m_isStopped);
    m_stop->setText(isRunning() ? QStringLiteral("&Stop") : QStringLiteral("&Learn Again"));
    m_insert->setEnabled(m_outcome.result.has_value() && !isRunning());
    m_remove->setEnabled(m_table->selectionModel()->hasSelection());
}

bool FitDialog::eventFilter(QObject* watched, QEvent* event)
{
    // Enter is about a line, not about the dialog.
    bool const isEnter = event->type() == QEvent::KeyPress
        && (static_cast<QKeyEvent*>(event)->key() == Qt::Key_Return
            || static_cast<QKeyEvent*>(event)->key() == Qt::Key_Enter);
    if (isEnter && watched == m_list && m_list->currentRow() >= 0)
        activate(m_list->currentRow());
    return isEnter || QDialog::eventFilter(watched, event);
}

void FitDialog::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void FitDialog::dropEvent(QDropEvent* event)
{
    QStringList files;
    QList<QUrl> const urls = event->mimeData()->urls();
    for (QUrl const& url : urls) {
        if (url.isLocalFile())
            files << url.toLocalFile();
    }
    addFiles(files);
    event->acceptProposedAction();
}
