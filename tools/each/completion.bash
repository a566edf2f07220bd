# Completion of vantiro-each for bash, with the functions of the package bash-completion.
_vantiro_each() {
  local cur prev words cword i
  _init_completion -n : || return
  # Behind the options stands a command with its own words, and behind ::: the inputs.
  for ((i = 1; i < cword; i++)); do
    if [[ ${words[i]} == ::: || ${words[i]} == :::: ]]; then
      _filedir
      return
    fi
  done
  for ((i = 1; i < cword; i++)); do
    case ${words[i]} in
      -j | --jobs | -a | --arg-file | --timeout | --halt | --workdir | --results | --tmpdir | --settings) ((i++)) ;;
      -*) ;;
      *)
        _command_offset "$i"
        return
        ;;
    esac
  done
  case $prev in
    -a | --arg-file | --settings) _filedir ;;
    --workdir | --results | --tmpdir) _filedir -d ;;
    --halt) COMPREPLY=($(compgen -W 'never now,fail=1 now,success=1 now,done=1' -- "$cur")) ;;
    -j | --jobs | --timeout) ;;
    *)
      if [[ $cur == -* ]]; then
        COMPREPLY=($(compgen -W '$(_parse_help "$1")' -- "$cur"))
      else
        COMPREPLY=($(compgen -c -- "$cur"))
      fi
      ;;
  esac
} && complete -F _vantiro_each vantiro-each
