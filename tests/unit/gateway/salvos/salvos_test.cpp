#include "gateway/salvos/salvos.h"

#include <gmock/gmock.h>

#include "tests/unit/gateway/salvos/salvos_fixture.h"

namespace Morquil::Testing {
namespace {

using Gateway::Json;
using Gateway::OnFailure;
using Gateway::RunOptions;
using Gateway::RunState;
using Gateway::Salvo;
using Gateway::StartResult;
using Gateway::Step;
using StartOutcome = StartResult::Outcome;
using testing::ElementsAre;
using testing::IsEmpty;

class Salvos : public testing::Test {
protected:
    Salvos() {
        world_.fleet.devices = {{"cam-1", {{"gain", 1}, {"mode", "a"}, {"model", "X"}}},
                                {"cam-2", {{"gain", 2}, {"mode", "a"}, {"hue", nullptr}}}};
        world_.fleet.readOnly = {"model"};
        world_.salvos->Put(show_);
    }

    FakeFleet& Fleet() { return world_.fleet; }
    StartResult Start(RunOptions options = {}) { return world_.salvos->Start("show", options); }
    const Gateway::Run& FindRun(const StartResult& result) { return *world_.salvos->FindRun(result.run); }
    static std::vector<std::string> Outcomes(const std::vector<Gateway::StepResult>& steps) {
        std::vector<std::string> outcomes;
        for (const Gateway::StepResult& step : steps) {
            outcomes.push_back(step.outcome);
        }
        return outcomes;
    }

    SalvosWorld world_;
    Salvo show_{
        .name = "show",
        .label = "Evening show",
        .steps = {{"cam-1", "gain", 10}, {"cam-1", "mode", "b"}, {"cam-2", "gain", 20}, {"cam-2", "mode", "b"}}};
};

TEST_F(Salvos, RunInParallelOverDevicesAndInOrderWithinOne) {
    const StartResult result = Start({.who = "anna"});
    ASSERT_EQ(result.outcome, StartOutcome::Started);
    EXPECT_THAT(Fleet().sent, ElementsAre("cam-1.gain=10", "cam-2.gain=20"));
    EXPECT_THAT(Outcomes(FindRun(result).steps), ElementsAre("sending", "", "sending", ""));
    Fleet().Answer(1, FakeFleet::Confirmed(20));
    EXPECT_THAT(Fleet().sent, ElementsAre("cam-1.gain=10", "cam-2.gain=20", "cam-2.mode=\"b\""));
    Fleet().ConfirmAll();
    const Gateway::Run& run = FindRun(result);
    EXPECT_EQ(run.state, RunState::Done);
    EXPECT_TRUE(run.ended);
    EXPECT_EQ(run.who, "anna");
    EXPECT_THAT(Outcomes(run.steps), ElementsAre("confirmed", "confirmed", "confirmed", "confirmed"));
    EXPECT_EQ(run.steps[0].old, 1);
    EXPECT_EQ(world_.events.back(), run);
}

TEST_F(Salvos, MayBeAnsweredAtOnce) {
    Fleet().answersAtOnce = true;
    const StartResult result = Start();
    EXPECT_EQ(FindRun(result).state, RunState::Done);
    EXPECT_EQ(Fleet().devices["cam-2"]["mode"], "b");
}

TEST_F(Salvos, DoNotSendWhatADeviceHasAlready) {
    Fleet().devices["cam-1"]["gain"] = 10;
    const StartResult result = Start();
    EXPECT_THAT(Fleet().sent, ElementsAre("cam-1.mode=\"b\"", "cam-2.gain=20"));
    Fleet().ConfirmAll();
    EXPECT_THAT(Outcomes(FindRun(result).steps), ElementsAre("same", "confirmed", "confirmed", "confirmed"));
    EXPECT_EQ(FindRun(result).state, RunState::Done);
}

TEST_F(Salvos, SetNothingWhenADeviceWouldRefuseOneStep) {
    Fleet().refusals["cam-2.mode"] = {"not-offered", 422, nullptr, "b is not offered", Json::array({"a"})};
    const StartResult result = Start();
    EXPECT_EQ(result.outcome, StartOutcome::NotOffered);
    EXPECT_THAT(Outcomes(result.steps), ElementsAre("", "", "", "not-offered"));
    EXPECT_EQ(result.steps[3].nearest, Json::array({"a"}));
    EXPECT_THAT(Fleet().sent, IsEmpty());
    EXPECT_EQ(world_.salvos->FindRun("run-1"), nullptr);
}

TEST_F(Salvos, ThatStopStartNoFurtherStep) {
    const StartResult result = Start();
    Fleet().Answer(0, FakeFleet::Refused());
    EXPECT_EQ(FindRun(result).state, RunState::Running) << "one answer is still missing";
    Fleet().Answer(0, FakeFleet::Confirmed(20));
    EXPECT_THAT(Fleet().sent, ElementsAre("cam-1.gain=10", "cam-2.gain=20"));
    EXPECT_THAT(Outcomes(FindRun(result).steps), ElementsAre("refused", "skipped", "confirmed", "skipped"));
    EXPECT_EQ(FindRun(result).state, RunState::Failed);
    EXPECT_EQ(FindRun(result).steps[0].status, 409);
    EXPECT_EQ(FindRun(result).steps[0].sentence, "The device refuses it");
}

TEST_F(Salvos, ThatContinueDoTheOtherSteps) {
    const StartResult result = Start({.onFailure = OnFailure::Continue});
    Fleet().Answer(0, FakeFleet::Refused());
    Fleet().ConfirmAll();
    EXPECT_THAT(Outcomes(FindRun(result).steps), ElementsAre("refused", "confirmed", "confirmed", "confirmed"));
    EXPECT_EQ(FindRun(result).state, RunState::Failed);
}

TEST_F(Salvos, ThatRollBackRestoreTheOldValuesInReverse) {
    const StartResult result = Start({.onFailure = OnFailure::RollBack});
    Fleet().Answer(0, FakeFleet::Confirmed(10));
    Fleet().Answer(0, FakeFleet::Confirmed(20));
    Fleet().Answer(0, FakeFleet::Confirmed("b"));
    Fleet().sent.clear();
    Fleet().Answer(0, FakeFleet::Refused());
    EXPECT_THAT(Fleet().sent, ElementsAre("cam-1.mode=\"a\"", "cam-2.gain=2"));
    Fleet().ConfirmAll();
    EXPECT_THAT(Outcomes(FindRun(result).steps), ElementsAre("rolled-back", "rolled-back", "rolled-back", "refused"));
    EXPECT_EQ(FindRun(result).state, RunState::RolledBack);
    EXPECT_EQ(Fleet().devices["cam-1"]["gain"], 1);
    EXPECT_EQ(Fleet().devices["cam-2"]["gain"], 2);
}

TEST_F(Salvos, ARollBackThatFailsGoesOnWithTheRest) {
    const StartResult result = Start({.onFailure = OnFailure::RollBack});
    Fleet().Answer(0, FakeFleet::Confirmed(10));
    Fleet().Answer(0, FakeFleet::Confirmed(20));
    Fleet().Answer(0, FakeFleet::Confirmed("b"));
    Fleet().Answer(0, FakeFleet::Refused());
    Fleet().Answer(0, FakeFleet::Refused());
    Fleet().ConfirmAll();
    EXPECT_THAT(Outcomes(FindRun(result).steps),
                ElementsAre("rolled-back", "roll-back-failed", "rolled-back", "refused"));
    EXPECT_EQ(FindRun(result).state, RunState::Failed);
}

TEST_F(Salvos, ADryRunShowsTheDifferencesAndSendsNothing) {
    Fleet().devices["cam-2"]["gain"] = 20;
    Fleet().refusals["cam-2.mode"] = {"not-offered", 422};
    const StartResult result = Start({.isDryRun = true});
    ASSERT_EQ(result.outcome, StartOutcome::Started);
    EXPECT_THAT(Fleet().sent, IsEmpty());
    const Gateway::Run& run = FindRun(result);
    EXPECT_THAT(Outcomes(run.steps), ElementsAre("would-set", "would-set", "same", "not-offered"));
    EXPECT_EQ(run.steps[0].old, 1);
    EXPECT_EQ(run.steps[0].value, 10);
    EXPECT_EQ(run.state, RunState::Failed);
    EXPECT_FALSE(world_.salvos->RollBack(result.run, "anna"));
}

TEST_F(Salvos, AnIdempotencyKeyStartsOneRun) {
    const StartResult first = Start({.who = "anna", .idempotencyKey = "k"});
    const StartResult second = Start({.who = "anna", .idempotencyKey = "k"});
    EXPECT_EQ(second.outcome, StartOutcome::Repeated);
    EXPECT_EQ(second.run, first.run);
    EXPECT_EQ(Start({.onFailure = OnFailure::Continue, .who = "anna", .idempotencyKey = "k"}).outcome,
              StartOutcome::KeyInUse);
    EXPECT_EQ(Start({.who = "bert", .idempotencyKey = "k"}).outcome, StartOutcome::Started)
        << "a key is its user's own";
    Fleet().ConfirmAll();
    world_.Restart();
    EXPECT_EQ(Start({.who = "anna", .idempotencyKey = "k"}).run, first.run) << "also after a restart";
}

TEST_F(Salvos, ARestartInTheMiddleLeavesTheRunInterrupted) {
    const StartResult result = Start();
    Fleet().Answer(0, FakeFleet::Confirmed(10));
    world_.Restart();
    const Gateway::Run& run = FindRun(result);
    EXPECT_EQ(run.state, RunState::Interrupted);
    EXPECT_TRUE(run.ended);
    EXPECT_THAT(Outcomes(run.steps), ElementsAre("confirmed", "unknown", "unknown", "unknown"));
    EXPECT_EQ(run.steps[0].old, 1);
    EXPECT_THAT(Fleet().requests, IsEmpty()) << "it does not go on by itself";
    world_.Restart();
    EXPECT_EQ(FindRun(result).state, RunState::Interrupted);
}

TEST_F(Salvos, AnInterruptedRunCanBeRolledBack) {
    const StartResult result = Start();
    Fleet().Answer(0, FakeFleet::Confirmed(10));
    world_.Restart();
    Fleet().sent.clear();
    EXPECT_TRUE(world_.salvos->RollBack(result.run, "anna"));
    EXPECT_FALSE(world_.salvos->RollBack(result.run, "anna")) << "it is running";
    Fleet().ConfirmAll();
    EXPECT_EQ(FindRun(result).state, RunState::RolledBack);
    EXPECT_EQ(Fleet().devices["cam-1"]["gain"], 1);
    EXPECT_THAT(Fleet().sent, testing::Contains("cam-2.gain=2")) << "it may have been set";
    EXPECT_FALSE(world_.salvos->RollBack(result.run, "anna")) << "it has been rolled back";
    EXPECT_FALSE(world_.salvos->RollBack("run-99", "anna"));
}

TEST_F(Salvos, AreWrittenOneTextAtATime) {
    world_.storesAtOnce = false;
    world_.writes = 0;
    const StartResult result = Start();
    Fleet().ConfirmAll();
    EXPECT_EQ(world_.writes, 1);
    world_.unwritten.front()();
    EXPECT_EQ(world_.writes, 2);
    EXPECT_EQ(Gateway::ReadRun(Json::parse(world_.stored["runs"][result.run])), FindRun(result));
    world_.unwritten.back()();
    EXPECT_EQ(world_.writes, 2);
}

TEST_F(Salvos, CaptureWhatCanBeSetAndIsKnown) {
    const auto captured = world_.salvos->Capture({"cam-1", "cam-2", "cam-9"}, {});
    EXPECT_THAT(captured.steps, ElementsAre(Step{"cam-1", "gain", 1}, Step{"cam-1", "mode", "a"},
                                            Step{"cam-2", "gain", 2}, Step{"cam-2", "mode", "a"}));
    EXPECT_THAT(captured.unknown, ElementsAre("cam-9"));
    EXPECT_THAT(world_.salvos->Capture({"cam-2"}, {"g*", "nothing"}).steps, ElementsAre(Step{"cam-2", "gain", 2}));
}

TEST_F(Salvos, AreStoredUntilTheyAreErased) {
    world_.Restart();
    EXPECT_THAT(world_.salvos->All(), ElementsAre(show_));
    show_.label = "Late show";
    world_.salvos->Put(show_);
    world_.Restart();
    EXPECT_EQ(*world_.salvos->Find("show"), show_);
    EXPECT_TRUE(world_.salvos->Erase("show"));
    EXPECT_FALSE(world_.salvos->Erase("show"));
    world_.Restart();
    EXPECT_THAT(world_.salvos->All(), IsEmpty());
    EXPECT_EQ(Start().outcome, StartOutcome::NotFound);
}

TEST_F(Salvos, TheOldestRunsAreForgottenButNoneThatIsRunning) {
    world_.mostRuns = 3;
    world_.Restart();
    Start();
    for (int i = 0; i < 5; ++i) {
        Start({.isDryRun = true});
    }
    EXPECT_NE(world_.salvos->FindRun("run-1"), nullptr);
    EXPECT_EQ(world_.salvos->FindRun("run-2"), nullptr);
    EXPECT_NE(world_.salvos->FindRun("run-6"), nullptr);
    EXPECT_EQ(world_.stored["runs"].size(), 3U);
    Fleet().ConfirmAll();
    EXPECT_EQ(world_.salvos->FindRun("run-1")->state, RunState::Done);
}

TEST_F(Salvos, MayEndInTheMiddleOfARun) {
    Start();
    const std::deque<FakeFleet::Request> requests = std::move(Fleet().requests);
    world_.salvos.reset();
    for (const FakeFleet::Request& request : requests) {
        request.done(FakeFleet::Confirmed(request.value));
    }
    EXPECT_EQ(Fleet().sent.size(), 2U);
}

TEST(ASalvo, IsRefusedWithTheNameOfWhatIsWrong) {
    const auto problemOf = [](const char* text) {
        std::string problem;
        EXPECT_EQ(Gateway::ReadSalvo(Json::parse(text), problem), std::nullopt) << text;
        return problem;
    };
    EXPECT_EQ(problemOf("[]"), "a salvo must be an object");
    EXPECT_THAT(problemOf(R"({"name":"Show","steps":[]})"), testing::HasSubstr("name must have"));
    EXPECT_EQ(problemOf(R"({"name":"show"})"), "steps must be a list of 1 to 1000");
    EXPECT_EQ(problemOf(R"({"name":"show","onFailure":"panic","steps":[]})"),
              "onFailure must be stop, continue or roll-back");
    EXPECT_EQ(problemOf(R"({"name":"show","steps":[1]})"), "steps[0] is not an object");
    EXPECT_EQ(problemOf(R"({"name":"show","steps":[{"device":"a","property":"b","value":1},{"property":"b"}]})"),
              "steps[1].device is missing");
    EXPECT_EQ(problemOf(R"({"name":"show","steps":[{"device":"a","property":1}]})"), "steps[0].property is missing");
    EXPECT_EQ(problemOf(R"({"name":"show","steps":[{"device":"a","property":"b"}]})"), "steps[0].value is missing");
    EXPECT_EQ(problemOf(R"({"name":"show","steps":[{"device":"a","property":"b","value":[]}]})"),
              "steps[0].value is not a number, a boolean or a text");
}

}  // namespace
}  // namespace Morquil::Testing
