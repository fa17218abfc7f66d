#include "platform/ServiceControl.h"
#include "../Surroundings.h"
#include "platform/posix/Process.h"
#include "platform/posix/Systemd.h"

#include <doctest/doctest.h>

#include <cerrno>
#include <csignal>
#include <thread>

using namespace platform;

TEST_CASE("a service is what its lock says") {
    const TemporaryHome home;
    ServiceQuery query = QueryService("agent");
    CHECK(query.failedAt == ServiceQueryStep::OpenService);
    CHECK(query.errorCode == ENOENT);

    CHECK(WriteStartCommand(home.Path(), "agent", {"/bin/true"}));
    query = QueryService("agent");
    CHECK(query.failedAt == ServiceQueryStep::Done);
    CHECK(query.state == ServiceState::Stopped);

    {
        std::optional<ServiceLock> lock = ServiceLock::Take(home.Path(), "agent");
        REQUIRE(lock);
        CHECK_FALSE(ServiceLock::Take(home.Path(), "agent"));
        CHECK(QueryService("agent").state == ServiceState::Running);
        for (const ServiceState state : {ServiceState::StartPending, ServiceState::Paused,
                                         ServiceState::StopPending, ServiceState::Running}) {
            lock->SetState(state);
            CHECK(QueryService("agent").state == state);
        }
        WriteFile(home.Path() / "agent.lock", "something else");
        CHECK(QueryService("agent").state == ServiceState::Running);
    }
    CHECK(QueryService("agent").state == ServiceState::Stopped);
    CHECK(ServiceLock::Take(home.Path(), "agent"));
}

TEST_CASE("a service is started by its command, once") {
    const TemporaryHome home;
    const std::filesystem::path proof = home.Path() / "two words";
    struct Case {
        std::vector<std::string> command;
        bool starts;
    };
    const Case cases[] = {
        {{"/bin/sh", "-c", "echo \"$1\" >>\"$0\"", proof.string(), "x y"}, true},
        {{"/no/such/program"}, false},
        {{"sh", "-c", "exit"}, false},
        {{}, false},
    };
    for (const Case& expected : cases) {
        REQUIRE(WriteStartCommand(home.Path(), "agent", expected.command));
        CHECK(StartService("agent").accepted == expected.starts);
    }
    CHECK(ComesTrue([&] { return ReadFile(proof) == "x y\n"; }));
    CHECK_FALSE(StartService("other"));
    CHECK_FALSE(StartService("../agent"));
    CHECK_FALSE(WriteStartCommand(home.Path(), "agent", {"/bin/sh\n-c"}));

    REQUIRE(WriteStartCommand(home.Path(), "agent", cases[0].command));
    std::optional<ServiceLock> running = ServiceLock::Take(home.Path(), "agent");
    CHECK(StartService("agent"));
    running->SetState(ServiceState::StopPending);
    CHECK(StartService("agent").refusal == "It is still stopping.");
    CHECK_FALSE(StartService("agent"));
    CHECK(ReadFile(proof) == "x y\n");
}

TEST_CASE("a program that is waited for ends with the wait, and with it what it has started") {
    const TemporaryFolder folder;
    const std::filesystem::path begun = folder.Path() / "begun";
    const auto start = std::chrono::steady_clock::now();
    std::stop_source stop;
    const std::jthread stopper([&] {
        ComesTrue([&] { return std::filesystem::exists(begun); });
        stop.request_stop();
    });
    const Printed ended =
        RunAndRead({"/bin/sh", "-c", "sleep 60 & : >\"$0\"; wait", begun.string()}, stop.get_token());
    CHECK(ended.exitCode == 128 + SIGKILL);
    CHECK(RunAndRead({"/bin/sh", "-c", "echo said"}).text == "said\n");
    CHECK(std::chrono::steady_clock::now() - start < std::chrono::seconds(30));
}

TEST_CASE("what systemd shows of a unit") {
    struct Case {
        const char* shown;
        std::optional<ServiceState> state;
    };
    const Case cases[] = {
        {"LoadState=loaded\nActiveState=active\n", ServiceState::Running},
        {"ActiveState=activating\nLoadState=loaded\n", ServiceState::StartPending},
        {"LoadState=loaded\nActiveState=deactivating\n", ServiceState::StopPending},
        {"LoadState=loaded\nActiveState=failed\n", ServiceState::Stopped},
        {"LoadState=masked\nActiveState=inactive\n", ServiceState::Stopped},
        {"LoadState=loaded\nActiveState=new-fangled\n", ServiceState::Unknown},
        {"LoadState=not-found\nActiveState=inactive\n", {}},
        {"", {}},
    };
    for (const Case& expected : cases) {
        CAPTURE(expected.shown);
        const std::optional<ServiceQuery> query = ReadUnitState(expected.shown);
        CHECK((query ? std::optional(query->state) : std::nullopt) == expected.state);
    }
}
