// The chart control beside QCustomPlot on the same curve, a noisy sine of
// 10^3 to 10^7 points in a 1000 x 600 control: a full repaint, and a zoom
// step (a notch in or out about the same pixel, then the repaint). Both
// widgets live in one process and take turns inside every iteration, the
// one that goes first alternating, so the load of a shared machine falls
// on both alike. Each benchmark's time is this chart's; its counters give
// the median times of both and the median of the per-iteration ratio
// (QCustomPlot's time over this chart's). A table of the medians over all
// repetitions closes the run.
//
// QCustomPlot is drawn as its users commonly set it up: no antialiasing,
// adaptive sampling on (its default), axes with ticks, labels and grid,
// and a legend naming the curve, as this chart names it.

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QWheelEvent>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <map>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include <qcustomplot.h>

#include "ui/chart/ChartControl.h"

namespace {

constexpr int kWidth = 1000;
constexpr int kHeight = 600;
constexpr int kSizes[] = {1000, 10000, 100000, 1000000, 10000000};
constexpr double kWheelZoom = 0.8;  // what one notch keeps of the range, as the chart's wheel does
const QPoint kZoomAt(400, 250);

enum class Step { Repaint, Zoom };

// Ten periods of a sine with noise, x in seconds (picoseconds apart).
struct Samples {
    std::vector<double> x;
    std::vector<double> y;
};

Samples NoisySine(int count) {
    std::mt19937 random(11);
    std::normal_distribution<double> noise(0.0, 0.05);
    Samples samples;
    samples.x.resize(static_cast<size_t>(count));
    samples.y.resize(static_cast<size_t>(count));
    for (int i = 0; i < count; ++i) {
        samples.x[static_cast<size_t>(i)] = i * 1e-12;
        samples.y[static_cast<size_t>(i)] = std::sin(20.0 * M_PI * i / count) + noise(random);
    }
    return samples;
}

// Both widgets showing the same curve. Made once per size: the larger
// ones take seconds to fill.
class Contenders {
public:
    explicit Contenders(int count) : m_count(count) {
        const Samples samples = NoisySine(count);

        m_ours.resize(kWidth, kHeight);
        m_ours.AddCurve(samples.x.data(), samples.y.data(), count, kv::MakeColorRef(200, 0, 0), 1);
        m_ours.SetCurveName(1, "noisy sine");
        m_ours.SetUnits("s", "V");
        m_ours.show();

        m_peer.resize(kWidth, kHeight);
        m_peer.setNotAntialiasedElements(QCP::aeAll);
        QCPGraph* graph = m_peer.addGraph();
        graph->setPen(QPen(QColor(200, 0, 0)));
        graph->setAdaptiveSampling(true);
        graph->setName(QStringLiteral("noisy sine"));
        graph->setData(QVector<double>(samples.x.begin(), samples.x.end()),
                       QVector<double>(samples.y.begin(), samples.y.end()), true);
        m_peer.legend->setVisible(true);
        m_peer.show();
        Fit();
        QApplication::processEvents();
    }

    int Count() const { return m_count; }

    void Fit() {
        m_ours.Fit();
        m_peer.rescaleAxes();
        m_peerCentre.reset();
        m_zoomIn = true;
    }

    void Ours(Step step) {
        if (step == Step::Zoom) {
            const QPointF at(kZoomAt);
            QWheelEvent wheel(at, m_ours.mapToGlobal(at), QPoint(),
                              QPoint(0, m_zoomIn ? 120 : -120), Qt::NoButton, Qt::NoModifier,
                              Qt::NoScrollPhase, false);
            QApplication::sendEvent(&m_ours, &wheel);
        }
        m_ours.repaint();
    }

    void Peer(Step step) {
        if (step == Step::Zoom) {
            // About the point first under the pointer: the peer's margins
            // follow its tick labels, so the same pixel drifts across the
            // data from one step to the next, and the view would wander off
            // the curve to an empty plot.
            if (!m_peerCentre) {
                m_peerCentre = QPointF(m_peer.xAxis->pixelToCoord(kZoomAt.x()),
                                       m_peer.yAxis->pixelToCoord(kZoomAt.y()));
            }
            const double factor = m_zoomIn ? kWheelZoom : 1.0 / kWheelZoom;
            m_peer.xAxis->scaleRange(factor, m_peerCentre->x());
            m_peer.yAxis->scaleRange(factor, m_peerCentre->y());
        }
        m_peer.replot(QCustomPlot::rpImmediateRefresh);
    }

    // After both have taken the step: the next zoom goes the other way.
    void Stepped() { m_zoomIn = !m_zoomIn; }

private:
    int m_count;
    kv::ui::CChartControl m_ours;
    QCustomPlot m_peer;
    std::optional<QPointF> m_peerCentre;
    bool m_zoomIn = true;
};

// The pair being measured; released before the application ends.
std::unique_ptr<Contenders>& Current() {
    static std::unique_ptr<Contenders> current;
    return current;
}

Contenders& ContendersFor(int count) {
    std::unique_ptr<Contenders>& current = Current();
    if (!current || current->Count() != count) {
        current.reset();  // the old pair's memory first: 10^7 points take a lot
        current = std::make_unique<Contenders>(count);
    }
    current->Fit();
    return *current;
}

template <typename Draw>
double Seconds(Draw&& draw) {
    const auto start = std::chrono::steady_clock::now();
    draw();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

double Median(std::vector<double> values) {
    if (values.empty()) {
        return 0.0;
    }
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

struct Timings {
    std::vector<double> ours;
    std::vector<double> peer;
    std::vector<double> ratio;
};

// Every pair measured, over all repetitions, for the closing table.
std::map<std::pair<Step, int>, Timings>& AllTimings() {
    static std::map<std::pair<Step, int>, Timings> timings;
    return timings;
}

void Compare(benchmark::State& state, Step step, int count) {
    Contenders& contenders = ContendersFor(count);
    Timings run;
    bool oursFirst = true;
    for (auto _ : state) {
        double ours = 0.0;
        double peer = 0.0;
        if (oursFirst) {
            ours = Seconds([&] { contenders.Ours(step); });
            peer = Seconds([&] { contenders.Peer(step); });
        } else {
            peer = Seconds([&] { contenders.Peer(step); });
            ours = Seconds([&] { contenders.Ours(step); });
        }
        contenders.Stepped();
        oursFirst = !oursFirst;
        state.SetIterationTime(ours);
        run.ours.push_back(ours);
        run.peer.push_back(peer);
        run.ratio.push_back(peer / ours);
    }
    state.counters["ours_ms"] = Median(run.ours) * 1e3;
    state.counters["qcp_ms"] = Median(run.peer) * 1e3;
    state.counters["ratio"] = Median(run.ratio);
    Timings& all = AllTimings()[{step, count}];
    all.ours.insert(all.ours.end(), run.ours.begin(), run.ours.end());
    all.peer.insert(all.peer.end(), run.peer.begin(), run.peer.end());
    all.ratio.insert(all.ratio.end(), run.ratio.begin(), run.ratio.end());
}

void PrintTable() {
    std::printf("\n%-8s %10s %10s %10s %12s %8s\n", "step", "points", "chart ms", "qcp ms", "ratio",
                "pairs");
    for (const auto& [key, timings] : AllTimings()) {
        std::printf("%-8s %10d %10.3f %10.3f %12.2f %8zu\n",
                    key.first == Step::Repaint ? "repaint" : "zoom", key.second,
                    Median(timings.ours) * 1e3, Median(timings.peer) * 1e3, Median(timings.ratio),
                    timings.ratio.size());
    }
}

}  // namespace

int main(int argc, char** argv) {
    // Measured without a display unless one is asked for.
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QApplication app(argc, argv);
    // Size by size, so each pair of widgets is filled once.
    for (const int count : kSizes) {
        for (const auto& [step, name] :
             {std::pair{Step::Repaint, "Repaint"}, {Step::Zoom, "Zoom"}}) {
            benchmark::RegisterBenchmark(
                ("BM_ChartVersusQCustomPlot" + std::string(name) + "/" + std::to_string(count))
                    .c_str(),
                [step = step, count](benchmark::State& state) { Compare(state, step, count); })
                ->UseManualTime()
                ->Unit(benchmark::kMillisecond);
        }
    }
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    Current().reset();
    PrintTable();
    return 0;
}
