#include "energy/qt/energy_window.h"

#include <QApplication>
#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QCategoryAxis>
#include <QChart>
#include <QChartView>
#include <QCheckBox>
#include <QCloseEvent>
#include <QComboBox>
#include <QCursor>
#include <QDateEdit>
#include <QDateTime>
#include <QDateTimeAxis>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QLineSeries>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QSplitter>
#include <QStackedBarSeries>
#include <QTabWidget>
#include <QTableWidget>
#include <QThread>
#include <QTimeZone>
#include <QToolTip>
#include <QVBoxLayout>
#include <QValueAxis>
#include <cmath>
#include <map>

#include "catalogue/failure.h"
#include "catalogue/files.h"
#include "catalogue/options.h"
#include "ui/qt_text.h"
#include "ui/window_fit.h"

namespace brizalog {

namespace {

QString Utf8(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// The short label under a bar: the day of the month, the week, the month's name, the year.
QString BarLabel(EnergyView view, const PeriodEnergy& p) {
    switch (view) {
        case EnergyView::Day:
            return QString::number(p.first.day);
        case EnergyView::Week:
            return Utf8(p.label.substr(5));
        case EnergyView::Month:
            return QLocale().monthName(p.first.month, QLocale::ShortFormat);
        case EnergyView::Year:
            break;
    }
    return Utf8(p.label);
}

QDate ToQDate(const CivilDate& d) {
    return QDate(d.year, d.month, d.day);
}

CivilDate FromQDate(const QDate& d) {
    return {d.year(), d.month(), d.day()};
}

// The power spans the user chooses from, in days.
struct SpanRow {
    const char* caption;
    int days;
};
constexpr SpanRow kSpans[] = {{"Week", 7}, {"Month", 31}, {"Year", 366}};

}  // namespace

QString EnergyWindow::LegendName(const SlotLook& look) const {
    // The first-run table calls every unused power channel "channel name": a legend tells them
    // apart by their slot.
    int same = 0;
    for (int slot = 1; slot <= kPowerSlots; ++slot) {
        same += m_model.Look(slot).name == look.name ? 1 : 0;
    }
    const QString name = Utf8(look.name);
    return same > 1 ? QStringLiteral("%1 (W%2)").arg(name).arg(look.slot) : name;
}

QColor ChannelColour(std::int32_t colour) {
    return QColor(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
}

EnergyWindow::EnergyWindow(SharedState& state, std::filesystem::path folder, CivilDate today,
                           QWidget* parent)
    : QWidget(parent, Qt::Window),
      m_state(state),
      m_folder(std::move(folder)),
      m_model(state, m_folder, today) {
    setObjectName(QStringLiteral("Energy"));
    setWindowTitle(tr("Energy"));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(BuildTopBar());
    m_tabs = new QTabWidget;
    m_tabs->addTab(BuildBars(), tr("&Energy"));
    m_tabs->addTab(BuildPower(), tr("&Power"));
    layout->addWidget(m_tabs, 1);
    layout->addWidget(BuildStatus());
    // Fits a 1366 × 768 screen with its panel and the window's frame.
    const QSize fit = screen() != nullptr ? screen()->availableGeometry().size() * 0.95 : QSize();
    resize(fit.isValid() ? QSize(1180, 640).boundedTo(fit) : QSize(1180, 640));
    FitToScreen(this);
    Render();  // the period and its empty table until the logs are read

    auto* previous = new QShortcut(QKeySequence(Qt::Key_PageUp), this);
    connect(previous, &QShortcut::activated, this, [this] {
        m_model.Previous();
        Render();
    });
    auto* next = new QShortcut(QKeySequence(Qt::Key_PageDown), this);
    connect(next, &QShortcut::activated, this, [this] {
        m_model.Next();
        Render();
    });
    auto* close = new QShortcut(QKeySequence(Qt::Key_Escape), this);
    connect(close, &QShortcut::activated, this, &QWidget::close);
}

EnergyWindow::~EnergyWindow() {
    StopReading();
}

QWidget* EnergyWindow::BuildTopBar() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);

    m_view = new QComboBox;
    m_view->setObjectName(QStringLiteral("View"));
    for (const char* caption :
         {"Days of a month", "Weeks of a year", "Months of a year", "Years"}) {
        m_view->addItem(tr(caption));
    }
    auto* viewLabel = new QLabel(tr("&Show"));
    viewLabel->setBuddy(m_view);
    connect(m_view, &QComboBox::activated, this, [this](int index) {
        static constexpr const char* kNames[] = {"day", "week", "month", "year"};
        m_model.SetView(kNames[index]);
        Render();
    });

    auto* previous = new QPushButton(QStringLiteral("◀"));
    previous->setObjectName(QStringLiteral("Previous"));
    previous->setToolTip(tr("Previous period (Page Up)"));
    connect(previous, &QPushButton::clicked, this, [this] {
        m_model.Previous();
        Render();
    });
    m_period = new QLabel;
    m_period->setObjectName(QStringLiteral("Period"));
    m_period->setMinimumWidth(m_period->fontMetrics().horizontalAdvance(QStringLiteral("0000-00")) +
                              16);
    m_period->setAlignment(Qt::AlignCenter);
    auto* next = new QPushButton(QStringLiteral("▶"));
    next->setObjectName(QStringLiteral("Next"));
    next->setToolTip(tr("Next period (Page Down)"));
    connect(next, &QPushButton::clicked, this, [this] {
        m_model.Next();
        Render();
    });
    for (QPushButton* arrow : {previous, next}) {
        arrow->setMaximumWidth(arrow->fontMetrics().horizontalAdvance(QStringLiteral("MMM")));
    }

    m_stacked = new QCheckBox(tr("S&tacked"));
    m_stacked->setObjectName(QStringLiteral("Stacked"));
    m_stacked->setChecked(m_model.stacked);
    connect(m_stacked, &QCheckBox::toggled, this, [this](bool on) {
        m_model.stacked = on;
        Render();
    });

    m_price = new QDoubleSpinBox;
    m_price->setObjectName(QStringLiteral("Price"));
    m_price->setDecimals(4);
    m_price->setRange(0, 100);
    m_price->setSingleStep(0.01);
    m_price->setValue(m_model.tariff().pricePerKWh);
    auto* priceLabel = new QLabel(tr("P&rice per kWh"));
    priceLabel->setBuddy(m_price);
    m_currency = new QLineEdit(Utf8(m_model.tariff().currency));
    m_currency->setObjectName(QStringLiteral("Currency"));
    m_currency->setMaxLength(8);
    m_currency->setMaximumWidth(
        m_currency->fontMetrics().horizontalAdvance(QStringLiteral("MMMMM")));
    connect(m_price, &QDoubleSpinBox::editingFinished, this, &EnergyWindow::SaveTariff);
    connect(m_currency, &QLineEdit::editingFinished, this, &EnergyWindow::SaveTariff);

    auto* exportCsv = new QPushButton(tr("E&xport CSV"));
    exportCsv->setObjectName(QStringLiteral("ExportCsv"));
    connect(exportCsv, &QPushButton::clicked, this, &EnergyWindow::ExportCsv);
    auto* image = new QPushButton(tr("Save chart &image"));
    image->setObjectName(QStringLiteral("SaveImage"));
    connect(image, &QPushButton::clicked, this, &EnergyWindow::SaveChartImage);
    auto* refresh = new QPushButton(tr("Re&fresh"));
    refresh->setObjectName(QStringLiteral("Refresh"));
    refresh->setToolTip(tr("Read the logs again (F5)"));
    refresh->setShortcut(QKeySequence(Qt::Key_F5));
    connect(refresh, &QPushButton::clicked, this, &EnergyWindow::Load);

    row->addWidget(viewLabel);
    row->addWidget(m_view);
    row->addWidget(previous);
    row->addWidget(m_period);
    row->addWidget(next);
    row->addWidget(m_stacked);
    row->addSpacing(12);
    row->addWidget(priceLabel);
    row->addWidget(m_price);
    row->addWidget(m_currency);
    row->addStretch(1);
    row->addWidget(exportCsv);
    row->addWidget(image);
    row->addWidget(refresh);
    return bar;
}

QWidget* EnergyWindow::BuildBars() {
    auto* split = new QSplitter(Qt::Horizontal);
    m_barView = new QChartView(new QChart);
    m_barView->setObjectName(QStringLiteral("Bars"));
    m_barView->setRenderHint(QPainter::Antialiasing);
    m_barView->setMinimumWidth(320);
    m_table = new QTableWidget(0, 4);
    m_table->setObjectName(QStringLiteral("Table"));
    m_table->verticalHeader()->hide();
    m_table->verticalHeader()->setDefaultSectionSize(m_table->fontMetrics().height() + 6);
    m_table->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_table->setSelectionBehavior(QAbstractItemView::SelectRows);
    // The notes take what the figures leave of the table's width.
    m_table->horizontalHeader()->setSectionResizeMode(3, QHeaderView::Stretch);
    connect(m_table, &QTableWidget::cellActivated, this, [this](int row, int) { Drill(row); });
    split->addWidget(m_barView);
    split->addWidget(m_table);
    split->setStretchFactor(0, 3);
    split->setStretchFactor(1, 2);
    split->setSizes({700, 460});
    return split;
}

QWidget* EnergyWindow::BuildPower() {
    auto* page = new QWidget;
    auto* column = new QVBoxLayout(page);
    auto* row = new QHBoxLayout;
    m_span = new QComboBox;
    m_span->setObjectName(QStringLiteral("Span"));
    for (const SpanRow& span : kSpans) {
        m_span->addItem(tr(span.caption), span.days);
    }
    auto* spanLabel = new QLabel(tr("Sp&an"));
    spanLabel->setBuddy(m_span);
    m_from = new QDateEdit(ToQDate(m_model.today()).addDays(-6));
    m_from->setObjectName(QStringLiteral("From"));
    m_from->setCalendarPopup(true);
    m_from->setDisplayFormat(QStringLiteral("yyyy-MM-dd"));
    auto* fromLabel = new QLabel(tr("Fr&om"));
    fromLabel->setBuddy(m_from);
    auto* show = new QPushButton(tr("Sho&w"));
    show->setObjectName(QStringLiteral("ShowPower"));
    const auto showPower = [this] {
        ShowPower(FromQDate(m_from->date()), m_span->currentData().toInt());
    };
    connect(show, &QPushButton::clicked, this, showPower);
    connect(m_span, &QComboBox::activated, this, [this, showPower](int) {
        // A longer span starts as far back as it reaches, to end today.
        const int days = m_span->currentData().toInt();
        m_from->setDate(ToQDate(m_model.today()).addDays(1 - days));
        showPower();
    });
    row->addWidget(spanLabel);
    row->addWidget(m_span);
    row->addWidget(fromLabel);
    row->addWidget(m_from);
    row->addWidget(show);
    row->addStretch(1);
    auto* hint =
        new QLabel(tr("5-minute averages over a week, hourly beyond; drag to zoom, "
                      "right-click to zoom out"));
    hint->setEnabled(false);
    row->addWidget(hint);
    column->addLayout(row);
    m_powerView = new QChartView(new QChart);
    m_powerView->setObjectName(QStringLiteral("PowerChart"));
    m_powerView->setRubberBand(QChartView::HorizontalRubberBand);
    column->addWidget(m_powerView, 1);
    connect(m_tabs, &QTabWidget::currentChanged, this, [this, showPower](int index) {
        if (index == 1 && m_powerView->chart()->series().isEmpty() && !Busy()) {
            showPower();
        }
    });
    return page;
}

QWidget* EnergyWindow::BuildStatus() {
    auto* bar = new QWidget;
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(0, 0, 0, 0);
    m_status = new QLabel;
    m_status->setObjectName(QStringLiteral("Status"));
    m_status->setTextInteractionFlags(Qt::TextSelectableByMouse);
    m_progress = new QProgressBar;
    m_progress->setObjectName(QStringLiteral("Progress"));
    m_progress->setMaximumWidth(320);
    m_progress->hide();
    m_cancel = new QPushButton(tr("&Cancel"));
    m_cancel->setObjectName(QStringLiteral("Cancel"));
    m_cancel->hide();
    connect(m_cancel, &QPushButton::clicked, this, [this] {
        if (m_job) {
            m_job->cancel = true;
        }
    });
    row->addWidget(m_status, 1);
    row->addWidget(m_progress);
    row->addWidget(m_cancel);
    return bar;
}

void EnergyWindow::RunInBackground(std::function<void()> work, std::function<void()> done) {
    StopReading();
    m_job = std::make_shared<Job>();
    m_reading = QThread::create(std::move(work));
    const unsigned run = ++m_runs;
    connect(m_reading, &QThread::finished, this, [this, run, done = std::move(done)] {
        if (run != m_runs || m_reading == nullptr) {
            return;  // a reading that was stopped
        }
        m_reading->deleteLater();
        m_reading = nullptr;
        m_progress->hide();
        m_cancel->hide();
        done();
    });
    m_progress->setRange(0, 0);
    m_progress->show();
    m_cancel->show();
    // Below the window thread, so a reading never delays a frame or a logging tick.
    m_reading->start(QThread::LowPriority);
}

void EnergyWindow::StopReading() {
    if (m_reading == nullptr) {
        return;
    }
    m_job->cancel = true;
    m_reading->wait();
    ++m_runs;
    disconnect(m_reading, nullptr, this, nullptr);
    delete m_reading;
    m_reading = nullptr;
}

void EnergyWindow::Load() {
    Status(tr("Reading the logs…"));
    const std::filesystem::path folder = m_folder;
    const ChannelTable channels = m_state.channels;
    auto result = std::make_shared<std::optional<EnergyBook>>();
    auto failed = std::make_shared<bool>(false);
    RunInBackground(
        [this, folder, channels, result, failed] {
            try {
                *result =
                    OpenEnergyBook(folder, channels, [this](std::size_t done, std::size_t total) {
                        QMetaObject::invokeMethod(
                            this,
                            [this, done, total] {
                                m_progress->setRange(0, static_cast<int>(total));
                                m_progress->setValue(static_cast<int>(done));
                            },
                            Qt::QueuedConnection);
                        return !m_job->cancel.load();
                    });
            } catch (const std::exception&) {
                // Nothing is shown rather than a torn book; the window says so.
                result->reset();
                *failed = true;
            }
        },
        [this, result, failed] {
            if (*failed) {
                Status(tr("The logs folder could not be read."));
                emit bookShown();
                return;
            }
            BookRead(std::move(*result));
        });
}

void EnergyWindow::BookRead(std::optional<EnergyBook> book) {
    if (!book) {
        Status(tr("Cancelled: the days read so far are kept for the next opening."));
        emit bookShown();
        return;
    }
    const std::size_t days = book->days.size();
    const std::size_t reread = book->reread;
    m_model.SetBook(std::move(*book));
    Render();
    Status(tr("%1 logged days, %2 read from their logs").arg(days).arg(reread));
    emit bookShown();
}

void EnergyWindow::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    // A palette changed to dark or back: the bars take the theme that goes with it (the power
    // chart takes it when it is drawn next, as a theme would recolour its lines).
    if (event->type() == QEvent::PaletteChange && m_barView != nullptr) {
        Render();
    }
}

void EnergyWindow::closeEvent(QCloseEvent* event) {
    StopReading();
    QWidget::closeEvent(event);
}

void EnergyWindow::Status(const QString& text) {
    m_status->setText(text);
}

void EnergyWindow::StyleChart(QChart* chart) const {
    const bool dark = palette().color(QPalette::Window).lightness() < 128;
    chart->setTheme(dark ? QChart::ChartThemeDark : QChart::ChartThemeLight);
    chart->setBackgroundBrush(palette().brush(QPalette::Base));
    chart->setTitleBrush(palette().brush(QPalette::Text));
    chart->legend()->setLabelColor(palette().color(QPalette::Text));
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->legend()->setAlignment(Qt::AlignBottom);
}

void EnergyWindow::Render() {
    m_view->setCurrentIndex(static_cast<int>(m_model.view()));  // the combo's rows in order
    const std::string period = m_model.PeriodText();
    m_period->setText(period.empty() ? tr("all") : Utf8(period));
    m_shown = m_model.Shown();
    RenderBars(m_shown);
    RenderTable(m_shown);
}

QString EnergyWindow::Tip(const PeriodEnergy& p) const {
    QString tip = QStringLiteral("<b>%1</b>").arg(Utf8(p.label));
    for (const SlotLook& look : m_model.SlotsShown({p})) {
        tip += QStringLiteral("<br>%1: %2 kWh")
                   .arg(Utf8(look.name).toHtmlEscaped(), Utf8(FormatWh(p.wh[look.slot] / 1000)));
    }
    tip += QStringLiteral("<br>Total %1 kWh, %2 %3")
               .arg(Utf8(FormatWh(p.total / 1000)), Utf8(FormatMoney(p.cost)),
                    Utf8(m_model.tariff().currency).toHtmlEscaped());
    if (!p.marks.empty()) {
        tip += QStringLiteral("<br><i>%1</i>").arg(Utf8(p.marks).toHtmlEscaped());
    }
    return tip;
}

void EnergyWindow::RenderBars(const std::vector<PeriodEnergy>& periods) {
    QChart* chart = m_barView->chart();
    chart->removeAllSeries();
    for (QAbstractAxis* axis : chart->axes()) {
        chart->removeAxis(axis);
        delete axis;
    }
    StyleChart(chart);
    QAbstractBarSeries* series =
        m_model.stacked ? static_cast<QAbstractBarSeries*>(new QStackedBarSeries) : new QBarSeries;
    double top = 0;
    for (const SlotLook& look : m_model.SlotsShown(periods)) {
        auto* set = new QBarSet(LegendName(look));
        set->setColor(ChannelColour(look.colour));
        set->setBorderColor(ChannelColour(look.colour).darker(130));
        for (const PeriodEnergy& p : periods) {
            const double kwh = p.wh[look.slot] / 1000;
            *set << kwh;
            top = std::max(top, m_model.stacked ? p.total / 1000 : kwh);
        }
        connect(set, &QBarSet::hovered, this, [this](bool on, int index) {
            if (on && index >= 0 && index < static_cast<int>(m_shown.size())) {
                QToolTip::showText(QCursor::pos(), Tip(m_shown[static_cast<std::size_t>(index)]),
                                   m_barView);
            } else {
                QToolTip::hideText();
            }
        });
        connect(set, &QBarSet::doubleClicked, this, [this](int index) { Drill(index); });
        series->append(set);
    }
    chart->addSeries(series);
    QAbstractAxis* categories = nullptr;
    if (periods.size() <= 12) {
        auto* axis = new QBarCategoryAxis;
        for (const PeriodEnergy& p : periods) {
            axis->append(BarLabel(m_model.view(), p));
        }
        categories = axis;
    } else {
        // A month's days or a year's weeks: every bar keeps its place, but only the first and
        // each fifth has its label, which would not fit under every bar at a large scale.
        auto* axis = new QCategoryAxis;
        axis->setLabelsPosition(QCategoryAxis::AxisLabelsPositionOnValue);
        axis->setRange(-0.5, static_cast<double>(periods.size()) - 0.5);
        axis->setStartValue(-0.5);
        for (std::size_t k = 0; k < periods.size(); ++k) {
            if (k == 0 || (k + 1) % 5 == 0) {
                axis->append(BarLabel(m_model.view(), periods[k]), static_cast<double>(k));
            }
        }
        axis->setGridLineVisible(false);
        categories = axis;
    }
    auto* values = new QValueAxis;
    values->setTitleText(tr("kWh"));
    values->setRange(0, top > 0 ? top * 1.08 : 1);
    values->applyNiceNumbers();
    // As many decimals as the scale's steps need: a first day of a few watt-hours still reads.
    const double span = values->max();
    values->setLabelFormat(span >= 10    ? QStringLiteral("%.0f")
                           : span >= 1   ? QStringLiteral("%.1f")
                           : span >= 0.1 ? QStringLiteral("%.2f")
                                         : QStringLiteral("%.3f"));
    chart->addAxis(categories, Qt::AlignBottom);
    chart->addAxis(values, Qt::AlignLeft);
    series->attachAxis(categories);
    series->attachAxis(values);
    double total = 0;
    double cost = 0;
    for (const PeriodEnergy& p : periods) {
        total += p.total;
        cost += p.cost;
    }
    chart->setTitle(tr("%1 kWh, %2 %3")
                        .arg(Utf8(FormatWh(total / 1000)), Utf8(FormatMoney(cost)),
                             Utf8(m_model.tariff().currency)));
}

void EnergyWindow::RenderTable(const std::vector<PeriodEnergy>& periods) {
    const QString currency = Utf8(m_model.tariff().currency);
    m_table->setHorizontalHeaderLabels(
        {tr("Period"), tr("kWh"), tr("Cost (%1)").arg(currency), tr("Notes")});
    m_table->setRowCount(static_cast<int>(periods.size()) + 1);
    double total = 0;
    double cost = 0;
    const auto put = [this](int row, int column, const QString& text, bool number) {
        auto* item = new QTableWidgetItem(text);
        if (number) {
            item->setTextAlignment(Qt::AlignRight | Qt::AlignVCenter);
        }
        m_table->setItem(row, column, item);
    };
    int row = 0;
    for (const PeriodEnergy& p : periods) {
        const bool shown = p.days > 0;
        put(row, 0, Utf8(p.label), false);
        put(row, 1, shown && p.loggedDays > 0 ? Utf8(FormatWh(p.total / 1000)) : QString(), true);
        put(row, 2, shown && p.loggedDays > 0 ? Utf8(FormatMoney(p.cost)) : QString(), true);
        put(row, 3, Utf8(p.marks), false);
        m_table->item(row, 0)->setToolTip(Tip(p));
        total += p.total;
        cost += p.cost;
        ++row;
    }
    put(row, 0, tr("Total"), false);
    put(row, 1, Utf8(FormatWh(total / 1000)), true);
    put(row, 2, Utf8(FormatMoney(cost)), true);
    put(row, 3, QString(), false);
    for (int column = 0; column < 3; ++column) {
        QFont bold = m_table->item(row, column)->font();
        bold.setBold(true);
        m_table->item(row, column)->setFont(bold);
    }
    for (int column = 0; column < 3; ++column) {
        m_table->resizeColumnToContents(column);
    }
}

void EnergyWindow::Drill(int index) {
    if (index < 0 || index >= static_cast<int>(m_shown.size())) {
        return;
    }
    const PeriodEnergy& p = m_shown[static_cast<std::size_t>(index)];
    switch (m_model.view()) {
        case EnergyView::Year:
            m_model.SetView("month");
            m_model.SetPeriod(std::to_string(p.first.year));
            break;
        case EnergyView::Month: {
            char period[16];
            std::snprintf(period, sizeof period, "%04d-%02d", p.first.year, p.first.month);
            m_model.SetView("day");
            m_model.SetPeriod(period);
            break;
        }
        case EnergyView::Week:
        case EnergyView::Day: {
            // The power of that day or week.
            const int days = DayNumber(p.last) - DayNumber(p.first) + 1 > 1 ? 7 : 1;
            m_tabs->setCurrentIndex(1);
            m_from->setDate(ToQDate(p.first));
            ShowPower(p.first, days);
            return;
        }
    }
    Render();
}

void EnergyWindow::ShowPower(const CivilDate& from, int days) {
    days = std::clamp(days, 1, 366);
    const CivilDate to = DateOfDayNumber(DayNumber(from) + days - 1);
    if (days > EnergyModel::kFineSpanDays) {
        RenderPower(HourlyPower(m_model.book(), from, to), from, days);
        return;
    }
    // A few days at 5-minute steps come from their logs, away from the window's thread.
    Status(tr("Reading the power of %1 days…").arg(days));
    auto points = std::make_shared<std::vector<PowerPoint>>();
    const std::filesystem::path folder = m_folder;
    std::vector<LoggedDay> logged;
    for (const LoggedDay& day : m_model.book().logged) {
        if (!(day.date < from) && !(to < day.date)) {
            logged.push_back(day);
        }
    }
    const ChannelTable channels = m_state.channels;
    RunInBackground(
        [points, folder, logged = std::move(logged), channels, from, to] {
            try {
                *points = FinePower(folder, logged, channels, from, to);
            } catch (const std::exception&) {
                points->clear();  // an empty chart rather than a torn one
            }
        },
        [this, points, from, days] { RenderPower(*points, from, days); });
}

void EnergyWindow::RenderPower(const std::vector<PowerPoint>& points, const CivilDate& from,
                               int days) {
    QChart* chart = m_powerView->chart();
    chart->removeAllSeries();
    for (QAbstractAxis* axis : chart->axes()) {
        chart->removeAxis(axis);
        delete axis;
    }
    StyleChart(chart);
    auto* time = new QDateTimeAxis;
    time->setFormat(days <= 7    ? QStringLiteral("ddd d MMM hh:mm")
                    : days <= 31 ? QStringLiteral("d MMM")
                                 : QStringLiteral("MMM yyyy"));
    const QDateTime start(ToQDate(from), QTime(0, 0));
    time->setRange(start, start.addDays(days));
    time->setTickCount(days <= 7 ? days + 1 : 13);
    auto* watts = new QValueAxis;
    watts->setTitleText(tr("W"));
    chart->addAxis(time, Qt::AlignBottom);
    chart->addAxis(watts, Qt::AlignLeft);
    double top = 0;
    // Wall-clock minutes to the chart's milliseconds: each day's midnight is converted at the
    // local time once (a conversion reads the time zone every time), its minutes added to it.
    std::map<long long, qint64> midnights;
    const QDate epoch(1970, 1, 1);
    const auto midnightOf = [&](long long day) {
        auto [it, fresh] = midnights.try_emplace(day, 0);
        if (fresh) {
            it->second = QDateTime(epoch.addDays(day), QTime(0, 0)).toMSecsSinceEpoch();
        }
        return it->second;
    };
    m_powerLines.clear();
    for (int slot = 1; slot <= kPowerSlots; ++slot) {
        PowerLine line;
        line.xs.reserve(points.size());
        line.ys.reserve(points.size());
        bool any = false;
        for (const PowerPoint& point : points) {
            const double w = point.watts[slot];
            if (std::isnan(w)) {
                continue;
            }
            const qint64 at = midnightOf(point.minute / 1440) + (point.minute % 1440) * 60000;
            line.xs.push_back(static_cast<double>(at));
            line.ys.push_back(w);
            top = std::max(top, w);
            any = any || w != 0;
        }
        if (!any) {
            continue;
        }
        const SlotLook look = m_model.Look(slot);
        line.series = new QLineSeries;
        line.series->setName(LegendName(look));
        line.series->setPen(QPen(ChannelColour(look.colour), 1.2));
        chart->addSeries(line.series);
        line.series->attachAxis(time);
        line.series->attachAxis(watts);
        m_powerLines.push_back(std::move(line));
    }
    // A line of a year's hours has several points to a pixel: each is drawn with those that
    // show, and a zoom draws the range it shows again from the whole.
    ThinPower(static_cast<double>(start.toMSecsSinceEpoch()),
              static_cast<double>(start.addDays(days).toMSecsSinceEpoch()));
    connect(time, &QDateTimeAxis::rangeChanged, this,
            [this](const QDateTime& min, const QDateTime& max) {
                ThinPower(static_cast<double>(min.toMSecsSinceEpoch()),
                          static_cast<double>(max.toMSecsSinceEpoch()));
            });
    watts->setRange(0, top > 0 ? top * 1.05 : 1);
    watts->applyNiceNumbers();
    chart->setTitle(tr("Power from %1, %2 days").arg(Utf8(IsoDate(from))).arg(days));
    Status(tr("%1 points of %2")
               .arg(points.size())
               .arg(days > EnergyModel::kFineSpanDays ? tr("hourly averages")
                                                      : tr("5-minute averages")));
    emit powerShown();
}

void EnergyWindow::ThinPower(double x0, double x1) {
    const int columns = std::max(200, static_cast<int>(m_powerView->chart()->plotArea().width()));
    for (const PowerLine& line : m_powerLines) {
        QList<QPointF> drawn;
        for (std::size_t k : PointsToDraw(line.xs, line.ys, x0, x1, columns)) {
            drawn.append(QPointF(line.xs[k], line.ys[k]));
        }
        line.series->replace(drawn);
    }
}

void EnergyWindow::SaveTariff() {
    EnergyTariff tariff;
    tariff.pricePerKWh = m_price->value();
    tariff.currency =
        m_currency->text().isEmpty() ? m_model.tariff().currency : m_currency->text().toStdString();
    if (tariff.pricePerKWh == m_model.tariff().pricePerKWh &&
        tariff.currency == m_model.tariff().currency) {
        return;
    }
    m_model.SetTariff(tariff);
    // options.cfg as it is on disk, with the two choices changed: nothing else of it is lost.
    Options options = ReadOptions(m_folder);
    // The file's numbers have a point for their decimal mark, whatever the user's locale.
    const std::string price = QString::number(tariff.pricePerKWh, 'g', 10).toStdString();
    for (Options* target : {&options, &m_state.options}) {
        target->Set("EnergyPrice", price);
        target->Set("EnergyCurrency", tariff.currency);
    }
    try {
        WriteOptions(options, m_folder);
        Status(tr("Tariff saved in options.cfg"));
    } catch (const Failure& failure) {
        Status(tr("The tariff could not be saved: %1").arg(QString::fromStdString(failure.what())));
    }
    Render();
}

QChartView* EnergyWindow::CurrentChartView() const {
    return m_tabs->currentIndex() == 1 ? m_powerView : m_barView;
}

std::filesystem::path EnergyWindow::ChartImagePath() const {
    std::string literal = m_model.CsvLiteral();
    literal.replace(literal.size() - 4, 4, m_tabs->currentIndex() == 1 ? "_power.png" : ".png");
    return InFolder(m_folder, literal);
}

bool EnergyWindow::SaveChartImage() {
    const std::filesystem::path path = ChartImagePath();
    const bool saved =
        CurrentChartView()->grab().save(QString::fromStdString(path.string()), "PNG");
    Status(
        saved
            ? tr("Chart saved as %1").arg(QString::fromStdString(path.string()))
            : tr("The chart could not be saved as %1").arg(QString::fromStdString(path.string())));
    return saved;
}

void EnergyWindow::ExportCsv() {
    try {
        const std::filesystem::path path = m_model.ExportCsv();
        Status(tr("Saved as %1").arg(QString::fromStdString(path.string())));
    } catch (const Failure& failure) {
        Status(tr("The CSV could not be written: %1").arg(QString::fromStdString(failure.what())));
    }
}

}  // namespace brizalog
