// completion, complete.
#include "command/completion/completion.h"

#include <algorithm>
#include <iterator>

#include "command/commands/commands.h"
#include "command/completion/completion_scripts.h"
#include "command/devices/named_devices.h"
#include "command/properties/property.h"
#include "properties/lower_case.h"

namespace Morquil::Command {
namespace {

using Candidates = std::vector<Candidate>;
using Words = std::vector<std::string>;

/// The finished words of a line, parsed far enough to know what may follow.
class TypedLine {
public:
    TypedLine(const Words& words, const Words& groups) : groups_(groups) {
        for (const std::string& word : words) {
            Add(word);
        }
    }

    const Grammar& Program() const { return program_; }
    /// The command named so far, or the program itself.
    const Grammar& Command() const { return *command_; }
    const std::string& CommandName() const { return name_; }
    /// The words after the command, without options.
    const Words& Operands() const { return operands_; }
    /// The option whose value is the next word; null if it is not one's.
    const OptionForm* AwaitedOption() const { return awaitedOption_; }
    const Words& Groups() const { return groups_; }
    bool MayHaveOptions() const { return !isAfterMark_; }

private:
    void Add(const std::string& word) {
        if (awaitedOption_ != nullptr) {
            awaitedOption_ = word == "=" ? awaitedOption_ : nullptr;  // bash splits it off as a word of its own
        } else if (!isAfterMark_ && word == "--") {
            isAfterMark_ = true;
        } else if (!isAfterMark_ && IsOption(word)) {
            awaitedOption_ = FindOptionWithValue(word);
        } else {
            AddOperand(word);
        }
    }

    void AddOperand(const std::string& word) {
        const auto& commands = command_->commands;
        const auto named = std::find_if(commands.begin(), commands.end(),
                                        [&word](const Grammar& command) { return command.name == word; });
        if (named == commands.end()) {
            operands_.push_back(word);
            return;
        }
        command_ = &*named;
        name_ += (name_.empty() ? "" : " ") + word;
    }

    // Numbers may also begin with a hyphen.
    static bool IsOption(const std::string& word) {
        return word.size() > 1 && word[0] == '-' && word.find_first_of("0123456789.", 1) != 1;
    }

    const OptionForm* FindOptionWithValue(const std::string& word) const {
        const auto found =
            std::find_if(program_.options.begin(), program_.options.end(), [&word](const OptionForm& option) {
                return option.takesValue && (word == option.name || word == "-" + option.letter);
            });
        return found != program_.options.end() ? &*found : nullptr;
    }

    const Grammar program_ = CommandLineGrammar();
    const Grammar* command_ = &program_;
    std::string name_;
    Words operands_;
    const Words& groups_;
    const OptionForm* awaitedOption_ = nullptr;
    bool isAfterMark_ = false;
};

template <class Condition>
Candidates NamesWith(Condition condition) {
    Candidates names;
    for (const Property& property : AllProperties()) {
        if (condition(property)) {
            names.push_back({property.name, std::string(property.summary)});
        }
    }
    return names;
}

// A name that was given already adds nothing.
Candidates Others(Candidates names, const Words& operands) {
    std::erase_if(names, [&operands](const Candidate& candidate) {
        return std::any_of(operands.begin(), operands.end(), [&candidate](const std::string& operand) {
            return Properties::IsSameButForCase(operand, candidate.word);
        });
    });
    return names;
}

Candidates ReadableNames(const Words& operands) {
    return Others(NamesWith([](const Property& property) { return property.IsReadable(); }), operands);
}
Candidates NamesWithRanges(const Words& operands) {
    return Others(NamesWith([](const Property& property) { return property.offer != nullptr; }), operands);
}
Candidates AllNames(const Words& operands) {
    return Others(NamesWith([](const Property&) { return true; }), operands);
}

Candidates ValuesOf(const Property& property) {
    if (property.type.kind == Kind::YesNo) {
        return {{"true"}, {"false"}};
    }
    Candidates values;
    for (const NamedValue& named : property.type.words) {
        values.push_back({std::string(named.word)});
    }
    return values;
}

// Names and values in turn; a property without a value has its name alone.
Candidates SettableNamesOrValues(const Words& operands) {
    const Property* named = nullptr;  // the property that the last name means; null if unknown
    bool isValueDue = false;
    for (const std::string& word : operands) {
        if (!isValueDue) {
            named = IsExactName(word) ? &FindProperty(word) : nullptr;
        }
        isValueDue = !isValueDue && (named == nullptr || named->type.kind != Kind::Nothing);
    }
    if (!isValueDue) {
        return NamesWith([](const Property& property) { return property.IsWritable(); });
    }
    return named != nullptr ? ValuesOf(*named) : Candidates();
}

Candidates File(const Words& operands) {
    return operands.empty() ? Candidates{{std::string(filesCandidate)}} : Candidates();
}

Candidates Shells(const Words& operands) {
    Candidates shells;
    for (const CompletionScript& script : completionScripts) {
        shells.push_back({std::string(script.shell)});
    }
    return operands.empty() ? shells : Candidates();
}

Candidates NumbersOfNamedPresets(const Words& operands) {
    const std::string_view beginning = "preset.name.";
    Candidates numbers;
    for (const Property* const property : SelectProperties({"preset.name"})) {
        numbers.push_back({property->name.substr(beginning.size())});
    }
    return operands.empty() ? numbers : Candidates();
}

// Addresses are known to the user only.
Candidates GroupsOf(const TypedLine& line) {
    Candidates groups;
    for (const std::string& name : line.Groups()) {
        groups.push_back({"@" + name});
    }
    return groups;
}

Candidates ValuesOf(const OptionForm& option, const TypedLine& line) {
    if (option.valueName == "FILE") {
        return {{std::string(filesCandidate)}};
    }
    return option.valueName == "ADDRESS" ? GroupsOf(line) : Candidates();
}

struct Rule {
    std::string_view command;
    Candidates (*offer)(const Words& operands);
};

// For the other commands, only the device knows what may follow, or nothing does.
// clang-format off
constexpr Rule rules[] = {
    {"get",         &ReadableNames},
    {"set",         &SettableNamesOrValues},
    {"ranges",      &NamesWithRanges},
    {"watch",       &ReadableNames},
    {"top",         &ReadableNames},
    {"list",        &AllNames},
    {"diff",        &File},
    {"apply",       &File},
    {"save",        &File},
    {"load",        &File},
    {"preset name", &NumbersOfNamedPresets},
    {"completion",  &Shells}};
// clang-format on

Candidates CommandsOf(const Grammar& parent) {
    Candidates commands;
    for (const Grammar& command : parent.commands) {
        commands.push_back({command.name, command.summary});
    }
    return commands;
}

// The command's options hide the program's options of the same name.
Candidates OptionsFor(const TypedLine& line) {
    Candidates options;
    for (const Grammar* const grammar : {&line.Command(), &line.Program()}) {
        for (const OptionForm& option : grammar->options) {
            const auto isSame = [&option](const Candidate& other) { return other.word == option.name; };
            if (std::none_of(options.begin(), options.end(), isSame)) {
                options.push_back({option.name, option.summary});
            }
        }
    }
    return options;
}

Candidates OperandsFor(const TypedLine& line) {
    if (!line.Command().commands.empty()) {
        return line.Operands().empty() ? CommandsOf(line.Command()) : Candidates();
    }
    if (line.CommandName() == "copy") {
        return GroupsOf(line);
    }
    const auto rule = std::find_if(std::begin(rules), std::end(rules),
                                   [&line](const Rule& one) { return one.command == line.CommandName(); });
    return rule != std::end(rules) ? rule->offer(line.Operands()) : Candidates();
}

Candidates CandidatesFor(const TypedLine& line, bool isOption) {
    if (line.AwaitedOption() != nullptr) {
        return ValuesOf(*line.AwaitedOption(), line);
    }
    return isOption ? OptionsFor(line) : OperandsFor(line);
}

bool BeginsWith(std::string_view text, std::string_view beginning) {
    return text.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end(), text.begin(),
                      [](char left, char right) { return Properties::Lower(left) == Properties::Lower(right); });
}

}  // namespace

std::vector<Candidate> Complete(std::vector<std::string> words, const std::vector<std::string>& groups) {
    const std::string unfinished = words.empty() ? std::string() : words.back();
    words.resize(words.empty() ? 0 : words.size() - 1);
    const TypedLine line(words, groups);
    Candidates candidates = CandidatesFor(line, line.MayHaveOptions() && unfinished.starts_with('-'));
    std::erase_if(candidates, [&unfinished](const Candidate& candidate) {
        return candidate.word != filesCandidate && !BeginsWith(candidate.word, unfinished);
    });
    return candidates;
}

void WriteCandidates(const Context& context) {
    std::string lines;
    for (const Candidate& candidate : Complete(context.options.words, NamesOfGroups(context.groupsFile))) {
        lines += candidate.word + (candidate.about.empty() ? "" : "\t" + candidate.about) + "\n";
    }
    context.terminal.out(lines);
}

void WriteCompletion(const Context& context) {
    const std::string& shell = context.options.words.front();
    for (const CompletionScript& script : completionScripts) {
        if (script.shell == shell) {
            context.terminal.out(script.text);
            return;
        }
    }
    throw UsageFailure("completion: '" + shell + "' is not a known shell; expected bash, zsh or fish");
}

}  // namespace Morquil::Command
