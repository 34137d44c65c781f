# bash completion for voka; installed as share/bash-completion/completions/voka.
_voka() {
    local cur prev words cword
    _init_completion 2>/dev/null || {
        cur=${COMP_WORDS[COMP_CWORD]}
        prev=${COMP_WORDS[COMP_CWORD-1]}
    }
    local commands="color uncolor filter restore validate call ids schemes check-settings import-ditaval edit migrate info menus command"
    local global="--home -y --yes -q --quiet --progress --value-separator --help --version"
    case $prev in
        --script) COMPREPLY=($(compgen -f -- "$cur")); return ;;
        --home|-o|--out) COMPREPLY=($(compgen -d -- "$cur")); return ;;
        --type) COMPREPLY=($(compgen -W "source duplicate" -- "$cur")); return ;;
        --form) COMPREPLY=($(compgen -W "own full" -- "$cur")); return ;;
        --format) COMPREPLY=($(compgen -W "text json sarif junit" -- "$cur")); return ;;
        --category|--scheme|--delimiter|--dialog|--value-separator) return ;;
    esac
    local command="" word
    for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
        case " $commands " in *" $word "*) command=$word; break ;; esac
    done
    if [ -z "$command" ]; then
        COMPREPLY=($(compgen -W "$commands $global" -- "$cur"))
        return
    fi
    local options=""
    case $command in
        color) options="--category --scheme --form -o --out" ;;
        uncolor) options="--category --scheme --form -o --out" ;;
        filter) options="--category --scheme --type --remove-coloring -o --out" ;;
        restore) options="-o --out" ;;
        validate) options="--category --scheme --format -o --out" ;;
        call) options="--open --delimiter -o --out" ;;
        schemes) options="--category" ;;
        import-ditaval) options="--category --scheme" ;;
        command) options="--dialog" ;;
        edit) options="--script" ;;
        migrate) options="--no-attributes" ;;
    esac
    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "$options $global" -- "$cur"))
    else
        COMPREPLY=($(compgen -f -- "$cur"))
    fi
}
complete -o filenames -F _voka voka
