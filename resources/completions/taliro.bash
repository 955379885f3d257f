# Completion for taliro and Taliro.
_taliro() {
    local word=${COMP_WORDS[COMP_CWORD]}
    if [[ $word == -* ]]; then
        mapfile -t COMPREPLY < <(compgen -W '--help --version' -- "$word")
    else
        compopt -o filenames 2>/dev/null
        mapfile -t COMPREPLY < <(compgen -f -- "$word")
    fi
}
complete -F _taliro taliro Taliro
