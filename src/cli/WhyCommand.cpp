#include <ostream>

#include "cli/Command.h"
#include "cli/JsonWriter.h"
#include "cli/Session.h"
#include "model/Vdependency.h"
#include "model/Vproject.h"
#include "model/Vresource.h"
#include "model/Vtask.h"
#include "model/Vtemplate.h"
#include "solve/WhyText.h"

namespace vortan {

namespace {

struct WhyOptions {
    std::string file, project;
    int task = 0;
    bool json = false;
};

using Cause = WhyReport::Cause;

const char* CauseName(Cause cause) {
    static constexpr const char* kNames[] = {"noWorkDay", "outsideShift", "held",
                                             "hoursUsed", "waiting",      "unbooked"};
    return kNames[static_cast<int>(cause)];
}

void WriteTask(JsonWriter& json, const char* name, const Vtask* task) {
    if (!task || !task->Project()) return json.Member(name, nullptr);
    json.ObjectMember(name, [&] {
        json.Member("project", task->Project()->ProjectName());
        json.Member("task", task->TaskID());
    });
}

void WriteDependency(JsonWriter& json, const Vdependency* dependency) {
    if (!dependency) return json.Member("dependency", nullptr);
    json.ObjectMember("dependency", [&] {
        WriteTask(json, "taskRequired", dependency->TaskRequired());
        json.Member("from", dependency->FromPercent());
        json.Member("to", dependency->ToPercent());
        json.Member("date", dependency->DepDate());
        json.Member("offset", dependency->Offset());
    });
}

void WriteStart(JsonWriter& json, const WhyReport::Start& start) {
    json.Object([&] {
        json.Member("from", start.fromPercent);
        json.Member("to", start.toPercent);
        json.Member("at", start.at);
        WriteDependency(json, start.dependency);
        json.Member("afterSliceBefore", start.afterSliceBefore);
    });
}

void WriteStretch(JsonWriter& json, const WhyReport::Stretch& stretch) {
    json.Object([&] {
        json.Member("from", stretch.from);
        json.Member("to", stretch.to);
        json.Member("cause", CauseName(stretch.cause));
        if (stretch.resource) {
            json.Member("template", stretch.resource->Template()->TemplateName());
            json.Member("resource", stretch.resource->ResourceID());
            WriteTask(json, "holder", stretch.holder);
        }
        if (stretch.cause == Cause::Waiting) {
            json.Member("percent", stretch.percent);
            WriteDependency(json, stretch.dependency);
        }
    });
}

void WriteFollower(JsonWriter& json, const WhyReport::Follower& follower) {
    json.Object([&] {
        WriteTask(json, "follower", follower.task);
        json.Member("start", follower.start);
        json.Member("percent", follower.percent);
        json.Member("room", follower.roomDays);
    });
}

std::string WhyJson(const CliSession& session, const Vtask& task, const WhyReport& report) {
    JsonWriter json;
    json.Object([&] {
        json.Member("status", session.solver.SolveMessage());
        json.Member("project", task.Project()->ProjectName());
        json.Member("task", task.TaskID());
        json.Member("earlyStart", task.EarlyStart());
        json.Member("earlyFinish", task.EarlyFinish());
        json.MemberIf(report.solved, "slack", report.slackDays);
        json.ArrayMember("starts", [&] {
            for (const auto& start : report.starts) WriteStart(json, start);
        });
        json.ArrayMember("stretches", [&] {
            for (const auto& stretch : report.stretches) WriteStretch(json, stretch);
        });
        json.ArrayMember("followers", [&] {
            for (const auto& follower : report.followers) WriteFollower(json, follower);
        });
    });
    return json.Line();
}

int Run(CliSession& session, const WhyOptions& options) {
    session.Load(options.file);
    session.SelectProject(options.project);
    const Vproject* project = session.workspace.ThisProject();
    const Vtask* task = project ? project->FindTask(options.task) : nullptr;
    if (!task || !task->Include()) {
        throw CliError("There is no task " + std::to_string(options.task) + " in " +
                       (project ? "project " + project->ProjectName() : options.file) + ".");
    }
    session.solver.Watch(task);
    const int exitCode = session.Solve();
    const WhyReport report = ExplainTask(session.solver, *task);
    if (options.json) {
        session.streams.out << session.WithLosses(WhyJson(session, *task, report));
        return exitCode;
    }
    session.streams.out << WhyText(*task, report);
    if (exitCode != kExitDone) {
        session.streams.out << "\n" << session.StatusLine() << "\n";
    }
    return exitCode;
}

}  // namespace

CliCommand WhyCommand() {
    return MakeCommand<WhyOptions>(
        "why", "Explain in plain words why a task lies where it does",
        [](WhyOptions& o) -> std::vector<Option> {
            return {PlanFileOption(o.file),
                    {"--task", &o.task, "Number of the task", "N", true},
                    ProjectOption(o.project, "Its project; the first one if not given"),
                    JsonOption(o.json)};
        },
        Run);
}

}  // namespace vortan
