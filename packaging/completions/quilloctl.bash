# Completion of quilloctl for bash. Stands on nothing but bash itself.

# Sets unquoted to a word of the command line as the command would get it.
_quilloctl_unquote() {
    unquoted=$1
    case $1 in
        \'*) unquoted=${1#\'}; unquoted=${unquoted%\'}; return ;;
        \"*) unquoted=${1#\"}; unquoted=${unquoted%\"} ;;
    esac
    # Without -r backslashes go, and what they kept stays.
    # shellcheck disable=SC2162
    IFS= read unquoted <<<"$unquoted"
}

# Offers those of the lines that begin as what was typed, written as the quotation that was begun needs it.
_quilloctl_offer() {
    local candidate backslash="\\" mark
    while IFS= read -r candidate; do
        [[ -n $candidate && ${candidate,,} == "${typed,,}"* ]] || continue
        case $quote in
            \")
                for mark in "$backslash" '"' '$' '`'; do
                    candidate=${candidate//"$mark"/"$backslash$mark"}
                done ;;
            \') candidate=${candidate//"'"/"'$backslash''"} ;;
            *) printf -v candidate %q "$candidate" ;;
        esac
        # readline closes no quotation that seems to be closed
        [[ -n $quote && $candidate == *"$quote" ]] && candidate+=$quote
        COMPREPLY+=("${candidate:${#trimmed}}")
    done
}

_quilloctl_offer_words() {
    _quilloctl_offer < <(printf '%s\n' "$@")
}

_quilloctl_offer_names() {
    _quilloctl_offer < <(quilloctl "${globals[@]}" complete "$@" 2>/dev/null)
}

# Files, or with -d folders, behind what stands before them in the word.
_quilloctl_offer_files() {
    local before=$1 file
    compopt -o filenames 2>/dev/null
    while IFS= read -r file; do
        file=$before$file
        COMPREPLY+=("${file:${#trimmed}}")
    done < <(compgen "${2:--f}" -- "${typed#"$before"}")
}

_quilloctl() {
    local commands="doctor windows displays save plan diff restore undo list show rename duplicate delete layout watch history launcher export import validate report help"
    local options="--desktop --data-dir --json --quiet -q --keep-scene --help -h --version"
    local words=() globals=() arguments=() word previous="" command="" joined="" index
    local quote="" trimmed="" typed unquoted
    COMPREPLY=()

    # bash breaks words at : and =, also those that a name or simulated:FILE holds.
    for word in "${COMP_WORDS[@]:0:COMP_CWORD+1}"; do
        if ((${#words[@]} > 1)) && [[ $word == [:=]* || -n $joined ]]; then
            words[-1]+=$word
        else
            words+=("$word")
        fi
        joined=""
        [[ $word == *[:=] && ${#words[@]} -gt 1 ]] && joined=yes
    done
    typed=${words[-1]}
    case $typed in
        [\"\']*) quote=${typed:0:1} ;;
        *[:=]*) [[ $COMP_WORDBREAKS == *:* ]] && trimmed=${typed%"${typed##*[:=]}"} ;;
    esac
    _quilloctl_unquote "$typed"
    typed=$unquoted

    for ((index = 1; index < ${#words[@]} - 1; index++)); do
        _quilloctl_unquote "${words[index]}"
        word=$unquoted
        case $word in
            --data-dir)
                _quilloctl_unquote "${words[index + 1]}"
                globals+=("$word" "$unquoted")
                ((index++)) ;;
            --data-dir=*) globals+=("$word") ;;
            --desktop | --only | --except | --update | --adapter | --clean-slate | --display | --wait-limit | --late | --count) ((index++)) ;;
            -*) ;;
            *) if [[ -z $command ]]; then command=$word; else arguments+=("$word"); fi ;;
        esac
    done
    if ((${#words[@]} > 2)); then previous=${words[-2]}; fi
    if [[ $typed == --*=* ]]; then
        previous=${typed%%=*}
        [[ -n $trimmed ]] || return
        trimmed=${trimmed#"$previous="}
        typed=${typed#"$previous="}
    fi

    case $previous in
        --desktop)
            if [[ $typed == simulated:* ]]; then
                _quilloctl_offer_files simulated:
            else
                compopt -o nospace 2>/dev/null
                _quilloctl_offer_words x11 simulated:
            fi
            return ;;
        --data-dir) _quilloctl_offer_files "" -d; return ;;
        --update) _quilloctl_offer_names workspaces; return ;;
        --only | --except) _quilloctl_offer_names applications "${arguments[0]}"; return ;;
        --adapter) _quilloctl_offer_words finder chromium safari firefox; return ;;
        --clean-slate) _quilloctl_offer_words keep hide quit; return ;;
        --display | --wait-limit | --late | --count) return ;;
    esac

    case $command in
        save) options="--update --force --adapter $options" ;;
        list) options="--long $options" ;;
        layout) options="--force $options" ;;
        watch) options="--count $options" ;;
        history) options="--long --adapter $options" ;;
        plan) options="--exit-code --only --except --adapter --clean-slate --arrange --display $options" ;;
        diff) options="--only --except --adapter $options" ;;
        restore) options="--only --except --adapter --clean-slate --arrange --display --wait --wait-limit --late --yes -y $options" ;;
        undo) options="--plan --quit-launched $options" ;;
        export) options="--force $options" ;;
        report) options="--force --adapter --clean-slate $options" ;;
    esac
    if [[ $typed == -* ]]; then
        # shellcheck disable=SC2086
        _quilloctl_offer_words $options
    elif [[ -z $command ]]; then
        # shellcheck disable=SC2086
        _quilloctl_offer_words $commands
    else
        case $command:${#arguments[@]} in
            plan:0 | diff:0 | restore:0 | show:0 | report:0) _quilloctl_offer_names sessions ;;
            rename:0 | duplicate:0 | delete:*) _quilloctl_offer_names workspaces ;;
            layout:0) _quilloctl_offer_words list save remove ;;
            layout:1) _quilloctl_offer_names workspaces ;;
            history:0) _quilloctl_offer_words list save clear ;;
            launcher:0) _quilloctl_offer_words add list remove ;;
            launcher:1) [[ ${arguments[0]} == list ]] || _quilloctl_offer_names launchers ;;
            launcher:*)
                case ${arguments[0]}:${#arguments[@]} in
                    remove:*) _quilloctl_offer_names launchers ;;
                    add:2) mapfile -t COMPREPLY < <(compgen -c -- "$typed") ;;
                    add:*) _quilloctl_offer_files "" ;;
                esac ;;
            help:0)
                # shellcheck disable=SC2086
                _quilloctl_offer_words $commands ;;
            help:1)
                case ${arguments[0]} in
                    history) _quilloctl_offer_words list save clear ;;
                    launcher) _quilloctl_offer_words add list remove ;;
                esac ;;
            import:0 | validate:0 | report:1) _quilloctl_offer_files "" ;;
            export:0) _quilloctl_offer_names sessions ;;
            export:*)
                _quilloctl_offer_names sessions
                ((${#COMPREPLY[@]})) || _quilloctl_offer_files "" ;;
        esac
    fi
}

complete -F _quilloctl quilloctl
