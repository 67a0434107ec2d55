// Precedence diagram and work breakdown structure as data.

#include "cli/ChartData.h"

namespace vortan {
namespace {

std::vector<std::string> TextsOf(const PrecedenceForm& form, std::size_t place) {
    return BoxTexts(form.Data(), place, form.TheStyle(), form.Units());
}

}  // namespace

void WriteChartJson(JsonWriter& json, const PrecedenceForm& precedence) {
    const Precedence& data = precedence.Data();
    json.Object([&] {
        json.Member("chart", "precedence");
        json.ArrayMember("boxes", [&] {
            for (std::size_t place = 0; place < data.boxes.size(); ++place) {
                const Precedence::Box& box = data.boxes[place];
                json.Object([&] {
                    json.Member("number", static_cast<std::int64_t>(place + 1));
                    json.Member("project", box.projectName);
                    json.Member("task", box.taskID);
                    json.Member("from", box.fromPercent);
                    json.Member("to", box.toPercent);
                    json.Member("col", box.col);
                    json.Member("row", box.row);
                    json.ArrayMember("lines", [&] {
                        for (const std::string& text : TextsOf(precedence, place)) json.Value(text);
                    });
                });
            }
        });
        json.ArrayMember("links", [&] {
            for (const auto& [from, to] : data.links) {
                json.Array([&, first = from + 1, second = to + 1] {
                    json.Value(first);
                    json.Value(second);
                });
            }
        });
        json.Member("columns", data.Columns());
        json.Member("rows", data.Rows());
    });
}

void WriteChartJson(JsonWriter& json, const WorkBreakdown& breakdown) {
    const auto write = [&](const WorkBreakdown::Text& text, bool box) {
        json.Object([&] {
            json.Member("level", text.level);
            json.Member("text", text.text);
            json.Member("x", text.x);
            json.Member("y", text.y);
            if (!box) return;
            json.Member("width", text.width);
            json.Member("height", text.height);
        });
    };
    json.Object([&] {
        json.Member("chart", "wbs");
        json.ObjectMember("pages", [&] {
            json.Member("across", breakdown.across);
            json.Member("down", breakdown.down);
        });
        json.ArrayMember("boxes", [&] {
            for (const auto& box : breakdown.boxes) write(box, true);
        });
        json.ArrayMember("lines", [&] {
            for (const auto& line : breakdown.lines) write(line, false);
        });
    });
}

}  // namespace vortan
