// What publishing adds to a logging tick and to a frame: building the messages of every reading
// of system 8, every channel shown, as the publisher does after each tick and, when asked, after
// a frame. The transport's work happens on its own thread and is not in these figures.

#include <benchmark/benchmark.h>

#include "catalogue/config_files.h"
#include "publish/publisher.h"

namespace {

struct NullLink : brizalog::PublishLink {
    void Configure(const brizalog::PublishSettings&) override {}
    void Send(brizalog::MqttMessage) override {}
};

// System 8 with all 24 channels shown, readings that change at each build.
brizalog::SharedState AllChannels() {
    brizalog::SharedState s;
    brizalog::SetDefaultChannelTable(s.channels);
    s.settings.SystemType = 8;
    s.settings.PersonalString = "Hill Shed";
    s.settings.WSUnits = "m/s";
    for (int n = 1; n <= 24; ++n) {
        s.channels.enableDISPLAY[n] = 1;
        s.channels.HARDWAREenabled[n] = 1;
        s.channels.ChannelName[n] = "channel " + std::to_string(n);
    }
    s.options.SetFlag("MqttEnabled", true);
    return s;
}

void Build(benchmark::State& state, brizalog::ValuesOf values) {
    brizalog::SharedState s = AllChannels();
    NullLink link;
    brizalog::Publisher publisher(link);
    publisher.Configure(s);
    publisher.Build(s, "Battery = 13.27V ", values);  // the announcement, once
    std::size_t messages = 0;
    for (auto _ : state) {
        for (int n = 1; n <= 16; ++n) {
            s.AvgValue[n] += 0.013;
            s.ChannelValue[n] += 0.017;
        }
        for (int slot = 1; slot <= 8; ++slot) {
            s.AvgWatts[slot] += 1.3;
            s.WattHours[slot] += 0.4;
        }
        messages = publisher.Build(s, "Battery = 13.27V ", values).size();
        benchmark::DoNotOptimize(messages);
    }
    state.counters["messages"] = static_cast<double>(messages);
}

void PublishTickOfSystemEight(benchmark::State& state) {
    Build(state, brizalog::ValuesOf::Tick);
}
BENCHMARK(PublishTickOfSystemEight);

void PublishFrameOfSystemEight(benchmark::State& state) {
    Build(state, brizalog::ValuesOf::Frame);
}
BENCHMARK(PublishFrameOfSystemEight);

// A change of layout: every configuration built again, as after a setup window.
void AnnounceLayoutOfSystemEight(benchmark::State& state) {
    brizalog::SharedState s = AllChannels();
    NullLink link;
    brizalog::Publisher publisher(link);
    publisher.Configure(s);
    int k = 0;
    for (auto _ : state) {
        s.channels.ChannelName[1] = (++k % 2 == 0) ? "amps a" : "amps b";
        s.settings.PersonalString = (k % 2 == 0) ? "Hill Shed" : "Hill Barn";
        benchmark::DoNotOptimize(publisher.Build(s, "", brizalog::ValuesOf::Tick).size());
    }
}
BENCHMARK(AnnounceLayoutOfSystemEight);

}  // namespace
