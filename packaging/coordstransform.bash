# bash completion for coordstransform: commands, their options (read from
# "coordstransform COMMAND --help") and model names from the model store.

_coordstransform()
{
    local cur=${COMP_WORDS[COMP_CWORD]} prev=${COMP_WORDS[COMP_CWORD-1]}
    local prog=${COMP_WORDS[0]} command=${COMP_WORDS[1]}
    COMPREPLY=()

    if (( COMP_CWORD == 1 )); then
        local commands
        commands=$("$prog" --help 2>/dev/null | sed -n '/^Commands:/,/^$/s/^  \([a-z0-9]*\) .*/\1/p')
        COMPREPLY=($(compgen -W "$commands --help" -- "$cur"))
        return
    fi

    case $prev in
        --model)
            local IFS=$'\n'
            COMPREPLY=($(compgen -W "$("$prog" models --names 2>/dev/null)" -- "$cur"))
            return ;;
        --kind) COMPREPLY=($(compgen -W "4 7" -- "$cur")); return ;;
        --field) COMPREPLY=($(compgen -W "name kind code proj wkt pretty esri" -- "$cur")); return ;;
        --format)
            [[ $command == reproject ]] && COMPREPLY=($(compgen -W "GTiff HFA ENVI COG" -- "$cur"))
            return ;;
        --resampling)
            COMPREPLY=($(compgen -W "near bilinear cubic cubicspline lanczos average mode" -- "$cur"))
            return ;;
        --resolution|--co) return ;;
        --folder) COMPREPLY=($(compgen -d -- "$cur")); return ;;
        --from|--to|--params|--params4|--params7|--name|--save|--threads)
            [[ $prev == --from || $prev == --to ]] && COMPREPLY=($(compgen -f -- "$cur"))
            return ;;
    esac

    if [[ $command == models ]]; then
        if (( COMP_CWORD == 2 )) && [[ $cur != -* ]]; then
            COMPREPLY=($(compgen -W "add remove rename export import" -- "$cur"))
            return
        fi
        case ${COMP_WORDS[2]} in
            remove|rename|export)
                if [[ $cur != -* ]] && (( COMP_CWORD == 3 )) || [[ $prev == --kind* ]]; then
                    local IFS=$'\n'
                    COMPREPLY=($(compgen -W "$("$prog" models --names 2>/dev/null)" -- "$cur"))
                    return
                fi ;;
        esac
    fi

    if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W "$("$prog" "$command" --help 2>/dev/null | grep -o -- '--[a-z0-9-]*' | sort -u) --help" -- "$cur"))
        return
    fi
    COMPREPLY=($(compgen -f -- "$cur"))
}

# -o filenames: readline quotes the blanks of model and file names.
complete -o filenames -F _coordstransform coordstransform
