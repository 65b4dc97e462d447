# Bash completion for kelxml: commands, their options, then files.
_kelxml()
{
    local word=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} choices=--help
    local commands='check copy tree find set unset text new write export call'
    if [ "$COMP_CWORD" -eq 1 ]; then
        choices="$commands help --help --version"
    elif [ "$command" = help ]; then
        choices=$commands
    elif [[ $word == -* ]]; then
        case $command in
            set | unset | text | call) choices='-o --help' ;;
            write | export) choices='--plain --help' ;;
        esac
    else
        COMPREPLY=() # files
        return
    fi
    mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
}
complete -o default -F _kelxml kelxml
