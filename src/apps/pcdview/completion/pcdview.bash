# SPDX-License-Identifier: MIT
# Completion of pcdview in bash. Needs the package bash-completion, which loads it.

_pcdview() {
    local cur prev words cword split
    _init_completion -s || return

    local options='--help --version --sdk --scene --plugin-path --camera --lang --theme --log-level --trace --trace-frames --grab --after'
    local values=
    case $prev in
        --sdk) values='auto sim' ;;
        --lang) values='en ru' ;;
        --theme) values='system light dark' ;;
        --log-level) values='debug info warning error off' ;;
        -c | --camera | --after) return ;;
    esac
    [[ -z $values && $cur == -* ]] && values=$options
    mapfile -t COMPREPLY < <(compgen -W "$values" -- "$cur")
    case $prev in
        --sdk | --plugin-path | --trace) _filedir ;;
        --grab) _filedir '@(png|tif|tiff)' ;;
        *) [[ $values ]] || _filedir json ;; # a profile or a scene
    esac
}

complete -F _pcdview pcdview
