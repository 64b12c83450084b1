#include "tests/soak/FailureReport.h"

#include <unistd.h>

#include <atomic>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <thread>

// Present in the sanitizer build only: called when a sanitizer report ends the process.
extern "C" void __sanitizer_set_death_callback(void (*callback)()) __attribute__((weak));

// The undefined-behaviour sanitizer keeps a run time of its own, which does not call the
// callback above: its reports end the run with an abort instead, which the signal handler
// turns into the replay command. The environment's options still come first.
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

void PutNumber(uint64_t value) {
    char digits[24];
    *std::to_chars(digits, digits + sizeof digits - 1, value).ptr = '\0';
    Put(digits);
}

void PrintReplay(const char* why) {
    if (g_reported.exchange(true)) {
        return;
    }
    Put("\nsoak_driver: ");
    Put(why);
    Put("\nsoak_driver: replay with: soak_driver --seed ");
    PutNumber(g_seed.load());
    Put(" --component ");
    Put(g_component.load());
    Put(" --events ");
    PutNumber(g_actions.load());
    Put("\n");
}

void OnSanitizerDeath() {
    PrintReplay("a sanitizer report ended the run");
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
    if (__sanitizer_set_death_callback != nullptr) {
        __sanitizer_set_death_callback(OnSanitizerDeath);
    }
}

void ReportPosition(uint64_t seed, const char* component) {
    g_seed = seed;
    g_component = component;
    g_actions = 0;
    Beat();
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
