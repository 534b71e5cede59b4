# Completion of the options, as the --help of each program lists them, and of input files.
_vbn() {
  local word=${COMP_WORDS[COMP_CWORD]} options
  COMPREPLY=()
  if [[ $word == -* ]]; then
    options=$("$1" --help 2>/dev/null | sed -nE 's/^ +(--?[a-z-]+).*/\1/p')
    mapfile -t COMPREPLY < <(compgen -W "$options" -- "$word")
  elif [[ ${COMP_WORDS[COMP_CWORD - 1]} != -* ]]; then
    mapfile -t COMPREPLY < <(compgen -f -X '!*.inp' -- "$word"; compgen -d -- "$word")
  fi
}
complete -o default -o filenames -F _vbn vbn vbn-spectrum vbn-report
