# Completion of quilloctl for bash.

# Completes from what these commands list: _quilloctl_workspaces WORD COMMAND...
_quilloctl_workspaces() {
    # Names may hold blanks: one a line, quoted as bash needs them.
    local name listing
    for listing in "${@:2}"; do
        # shellcheck disable=SC2086
        quilloctl "${globals[@]}" --json $listing 2>/dev/null
    done |
        sed -n 's/^.*"name":"\(\([^"\\]\|\\.\)*\)".*$/\1/p' |
        sed 's/\\\(["\/\\]\)/\1/g' |
        while IFS= read -r name; do
            [[ ${name,,} == "${1,,}"* ]] && printf '%q\n' "$name"
        done
}

_quilloctl() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local commands="doctor windows displays save plan restore list show rename duplicate delete history export import validate"
    local options="--desktop --data-dir --json --keep-scene --help -h --version"
    local command="" word globals=() arguments=0 index
    COMPREPLY=()

    for ((index = 1; index < COMP_CWORD; index++)); do
        word=${COMP_WORDS[index]}
        case $word in
            --data-dir)
                globals+=("$word" "${COMP_WORDS[index + 1]}")
                ((index++)) ;;
            --desktop | --only | --update | --adapter | --clean-slate) ((index++)) ;;
            -*) ;;
            *) if [[ -z $command ]]; then command=$word; else ((arguments++)); fi ;;
        esac
    done

    case $previous in
        --desktop) mapfile -t COMPREPLY < <(compgen -W "x11 simulated:" -- "$current"); return ;;
        --data-dir) mapfile -t COMPREPLY < <(compgen -d -- "$current"); return ;;
        --update) mapfile -t COMPREPLY < <(_quilloctl_workspaces "$current" list); return ;;
        --only) return ;;
        --adapter) mapfile -t COMPREPLY < <(compgen -W "finder chromium safari firefox" -- "$current"); return ;;
        --clean-slate) mapfile -t COMPREPLY < <(compgen -W "keep hide quit" -- "$current"); return ;;
    esac

    case $command in
        save) options="--update --adapter $options" ;;
        history) options="--adapter $options" ;;
        plan) options="--adapter --clean-slate $options" ;;
        restore) options="--only --adapter --clean-slate --yes -y $options" ;;
        export) options="--force $options" ;;
    esac
    if [[ $current == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$options" -- "$current")
    elif [[ -z $command ]]; then
        mapfile -t COMPREPLY < <(compgen -W "$commands" -- "$current")
    else
        case $command:$arguments in
            plan:0 | restore:0 | show:0 | export:0)
                mapfile -t COMPREPLY < <(_quilloctl_workspaces "$current" list "history list") ;;
            rename:0 | duplicate:0 | delete:0)
                mapfile -t COMPREPLY < <(_quilloctl_workspaces "$current" list) ;;
            history:0) mapfile -t COMPREPLY < <(compgen -W "list save clear" -- "$current") ;;
            import:0 | validate:0 | export:1)
                compopt -o filenames 2>/dev/null
                mapfile -t COMPREPLY < <(compgen -f -- "$current") ;;
        esac
    fi
}

complete -F _quilloctl quilloctl
