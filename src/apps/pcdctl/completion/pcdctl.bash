# SPDX-License-Identifier: MIT
# Completion of pcdctl in bash. Needs the package bash-completion, which loads it.

_pcdctl() {
    local cur words cword
    # Whole words: bash itself would split "--sdk=sim" and "contrast=12" at the "=".
    _get_comp_words_by_ref -n =: cur words cword
    # Nothing of the line is run: quotes are removed, variables stay as they are.
    local -a typed=("${words[@]:1:cword}")
    typed=("${typed[@]//[\"\'\\]/}")

    local -a candidates=()
    local line files=
    while IFS= read -r line; do
        if [[ $line == :files ]]; then
            files=yes
        else
            candidates+=("${line%%$'\t'*}")
        fi
    done < <("${words[0]/#\~\//$HOME/}" __complete "${typed[@]}" 2>/dev/null)

    # Only what follows the last "=" or ":" is replaced, or everything within quotes.
    local kept= quoted=
    if [[ $cur == [\"\']* ]]; then
        quoted=yes
    else
        kept=${typed[cword - 1]}
        kept=${kept%"${kept##*[=:]}"}
    fi
    local candidate
    COMPREPLY=()
    for candidate in "${candidates[@]}"; do
        candidate=${candidate#"$kept"}
        [[ $files || $quoted ]] || printf -v candidate %q "$candidate"
        COMPREPLY+=("$candidate")
    done
    if [[ $files ]]; then
        [[ $cur == --*=* ]] && cur=${cur#*=}
        _filedir
    fi
    [[ ${#COMPREPLY[@]} -eq 1 && ${COMPREPLY[0]} == *= ]] && compopt -o nospace
    return 0
}

complete -F _pcdctl pcdctl
