#include "solve/PlanEffect.h"

#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vtemplate.h"
#include "solve/Solver.h"
#include "support/ScriptedPlatform.h"
#include "support/TextPlan.h"

namespace vortan {
namespace {

TEST(PlanEffectTest, TellsWhatAnEditMoved) {
    ScriptedPlatform platform;
    Workspace workspace(platform);
    Solver solver(workspace);
    MakePlan(workspace,
             "journals 9/3/2001 9/6/2001; template Crew; resource 1 \"Ann\" $50; project Shed rule 1; "
             "task 1 \"Dig\" work 480 start=9/3/2001_8:00 by 1; task 2 \"Wall\" work 480 after 1 by 1; "
             "task 3 \"Sign\" work 60 start=9/3/2001_8:00 by 1; task 4 \"End\" dates after 2 after 3");
    Vproject& shed = *workspace.ThisProject();
    PlanWatch watch;
    const auto effect = [&] {
        solver.RestartSolve();
        solver.SolveTimerTick();
        EXPECT_EQ(solver.SolveMessage(), "Solve complete");
        return watch.Compare(workspace, solver);
    };
    EXPECT_TRUE(effect().IsNone());
    EXPECT_EQ(EffectText(effect()), "Nothing moved");

    for (const int minutes : {960, 480}) {
        for (auto set : {&Vtask::SetOptimistic, &Vtask::SetMostLikely, &Vtask::SetPessimistic})
            (shed.FindTask(2)->*set)(minutes);
        const PlanEffect found = effect();
        ASSERT_EQ(found.moved.size(), 2u) << "the task itself, and the end";
        EXPECT_EQ(found.moved[0].task.Get(), shed.FindTask(2));
        EXPECT_EQ(found.moved[0].startBefore, found.moved[0].startNow);
        EXPECT_EQ(EffectText(found),
                  minutes == 960 ? "Finish of Shed 9/5/2001 -> 9/6/2001; 2 tasks moved; labor +$400.00"
                                 : "Finish of Shed 9/6/2001 -> 9/5/2001; 2 tasks moved; labor $-400.00");
    }
    shed.FindTask(1)->SetMaterialCost(Money::FromDouble(10));
    EXPECT_EQ(EffectText(effect()), "Material +$10.00");

    // One from the middle goes: those behind it are still known.
    shed.FindTask(3)->Delete();
    Vtask* last = shed.FindOrCreateTask(9);
    last->SetEffortUnits(0);
    auto* date = workspace.NewVObject<Vdependency>();
    date->SetTask(last);
    date->SetDepDate(shed.Journal());
    shed.FindTask(4)->DependencyList()[1]->SetTaskRequired(last);
    const PlanEffect swapped = effect();
    EXPECT_EQ(swapped.added, 1);
    EXPECT_EQ(swapped.removed, 1);

    workspace.ThisProject()->SetCurrentIndex(1);
    workspace.ThisTemplate()->SetCurrentIndex(1);
    EXPECT_TRUE(effect().IsNone()) << "another journal is another plan";
}

}  // namespace
}  // namespace vortan
