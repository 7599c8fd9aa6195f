#include "command/completion/completion_scripts.h"

namespace Morquil::Command {
namespace {

constexpr std::string_view bash = R"sh(# Completes morquilctl in bash: source <(morquilctl completion bash)
_morquilctl() {
    local line program="${1/#\~\//$HOME/}" words=("${COMP_WORDS[@]:1:COMP_CWORD}") at
    # bash takes the name of a group apart.
    for ((at = ${#words[@]} - 2; at >= 0; at--)); do
        if [[ "${words[at]}" == "@" ]]; then
            words=("${words[@]:0:at}" "@${words[at + 1]}" "${words[@]:at + 2}")
        fi
    done
    COMPREPLY=()
    while IFS= read -r line; do
        if [[ "$line" == ":files" ]]; then
            compopt -o default
        else
            COMPREPLY+=("$(printf '%q' "${line%%$'\t'*}")")
        fi
    done < <("$program" complete -- "${words[@]//\\/}" 2> /dev/null)
}
complete -F _morquilctl morquilctl
)sh";

constexpr std::string_view zsh = R"sh(#compdef morquilctl
# Completes morquilctl in zsh: source <(morquilctl completion zsh)
_morquilctl() {
    local line
    local -a candidates
    for line in "${(@f)$("${words[1]/#\~\//$HOME/}" complete -- "${(@Q)words[2,CURRENT]}" 2> /dev/null)}"; do
        if [[ "$line" == ":files" ]]; then
            _files
        elif [[ -n "$line" ]]; then
            candidates+=("${${line//:/\\:}/$'\t'/:}")
        fi
    done
    _describe -V 'morquilctl' candidates
}
# From a folder of $fpath this file runs as the function itself.
if [[ "${funcstack[1]}" == "_morquilctl" ]]; then
    _morquilctl "$@"
else
    compdef _morquilctl morquilctl
fi
)sh";

constexpr std::string_view fish = R"sh(# Completes morquilctl in fish: morquilctl completion fish | source
function __morquilctl_candidates
    set -l words (commandline -opc)
    set -l current (commandline -ct | string unescape)
    for line in ($words[1] complete -- $words[2..] "$current" 2> /dev/null)
        if test "$line" = ":files"
            __fish_complete_path "$current"
        else
            printf '%s\n' "$line"
        end
    end
end
complete -c morquilctl -f -a '(__morquilctl_candidates)'
)sh";

}  // namespace

const CompletionScript completionScripts[3] = {{"bash", bash}, {"zsh", zsh}, {"fish", fish}};

}  // namespace Morquil::Command
