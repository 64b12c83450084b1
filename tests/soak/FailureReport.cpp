#include "tests/soak/FailureReport.h"

#include <unistd.h>

#include <atomic>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <thread>

// A sanitizer's report ends the run with an abort, which the signal handler below turns into
// the replay command. The environment's options still come first.
extern "C" __attribute__((visibility("default"), used)) const char* __asan_default_options() {
    return "abort_on_error=1";
}
extern "C" __attribute__((visibility("default"), used)) const char* __ubsan_default_options() {
    return "abort_on_error=1:print_stacktrace=1";
}

namespace kv::soak {
namespace {

std::atomic<uint64_t> g_seed{0};
std::atomic<const char*> g_component{"none"};
std::atomic<uint64_t> g_actions{0};
std::atomic<uint64_t> g_beats{0};
std::atomic<bool> g_reported{false};

constexpr int kSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT};
struct sigaction g_previous[std::size(kSignals)];

// Signal handlers may only write; std::to_chars neither allocates nor locks.
void Put(const char* text) {
    const ssize_t ignored = write(STDERR_FILENO, text, std::strlen(text));
    (void)ignored;
}

void PrintReplay(const char* why) {
    if (g_reported.exchange(true)) {
        return;
    }
    char seed[24] = {};
    char actions[24] = {};
    std::to_chars(seed, seed + sizeof seed - 1, g_seed.load());
    std::to_chars(actions, actions + sizeof actions - 1, g_actions.load());
    for (const char* part :
         {"\nsoak_driver: ", why, "\nsoak_driver: replay with: soak_driver --seed ",
          static_cast<const char*>(seed), " --component ", g_component.load(), " --events ",
          static_cast<const char*>(actions), "\n"}) {
        Put(part);
    }
}

void OnSignal(int signal) {
    PrintReplay(signal == SIGABRT ? "aborted (SIGABRT)" : "crashed on a signal");
    // The handler that was there before (the sanitizer's, or the default) reports the fault
    // itself: a fault happens again on return, an abort raises again.
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
        if (kSignals[i] == signal) {
            sigaction(signal, &g_previous[i], nullptr);
        }
    }
    if (signal == SIGABRT) {
        raise(signal);
    }
}

}  // namespace

void InstallFailureReport() {
    for (std::size_t i = 0; i < std::size(kSignals); ++i) {
        struct sigaction action {};
        action.sa_handler = OnSignal;
        sigemptyset(&action.sa_mask);
        sigaction(kSignals[i], &action, &g_previous[i]);
    }
}

void ReportPosition(uint64_t seed, const char* component) {
    g_seed = seed;
    g_component = component;
    ReportAction(0);
}

void ReportAction(uint64_t actions) {
    g_actions = actions;
    Beat();
}

void Beat() {
    g_beats.fetch_add(1, std::memory_order_relaxed);
}

void Fail(const char* why) {
    PrintReplay(why);
    std::_Exit(1);
}

void StartWatchdog(int seconds) {
    std::thread([seconds] {
        uint64_t last = g_beats.load();
        auto since = std::chrono::steady_clock::now();
        for (;;) {
            std::this_thread::sleep_for(std::chrono::milliseconds(250));
            const uint64_t now = g_beats.load();
            if (now != last) {
                last = now;
                since = std::chrono::steady_clock::now();
            } else if (std::chrono::steady_clock::now() - since > std::chrono::seconds(seconds)) {
                Fail("nothing was processed for the watchdog's time: a hang");
            }
        }
    }).detach();
}

}  // namespace kv::soak
