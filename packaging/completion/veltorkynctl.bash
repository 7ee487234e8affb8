# Commands and options of veltorkynctl, asked of the program itself.

_veltorkynctl() {
    local cur prev words cword
    _init_completion || return

    local commands first="${words[1]:-}" length=1
    commands=$(veltorkynctl --help 2>/dev/null | sed -n 's/^  \([a-z]\+\( [a-z]\+\)\?\)  .*/\1/p')
    grep -q "^$first " <<<"$commands" && length=2

    if [ "$cword" -eq 1 ]; then
        mapfile -t COMPREPLY < <(compgen -W "$(cut -d ' ' -f 1 <<<"$commands" | sort -u) --help --version" -- "$cur")
    elif [ "$cword" -eq 2 ] && [ "$length" -eq 2 ]; then
        mapfile -t COMPREPLY < <(compgen -W "$(sed -n "s/^$first //p" <<<"$commands") --help" -- "$cur")
    elif [[ $cur == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W "--help $(veltorkynctl "${words[@]:1:$length}" --help 2>/dev/null |
            sed -n 's/^  \(--[a-z-]\+\).*/\1/p')" -- "$cur")
    else
        _filedir
    fi
}
complete -F _veltorkynctl veltorkynctl
