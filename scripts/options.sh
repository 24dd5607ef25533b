# To be sourced by the scripts: goes to the project's folder, and reads the options of all scripts in
# one way.
#
# readOptions "OPTION..." ARGUMENT...: each OPTION is `--name` or, with a value, `--name=`; the value
# is given as `--name=VALUE` or `--name VALUE`. Puts what was given into `option[name]` and the other
# words into `arguments`. `--help` prints the comment at the head of the script. An option that is not
# among the OPTIONs is refused, unless these end with `...`, as those do whose script hands the rest on.
script=$(realpath "$0")
cd "$(dirname "$script")/.."
declare -A option=()
arguments=()

refuse() {
  echo "$(basename "$script"): $1 (--help says more)" >&2
  exit 2
}

readOptions() {
  local known=" $1 " word name
  shift
  while [[ $# -gt 0 ]]; do
    word=$1 name=${1%%=*}
    shift
    if [[ $word == --help ]]; then
      sed -n '2,${/^#/!q;s/^# \{0,1\}//p}' "$script"
      exit 0
    elif [[ $word == -- ]]; then
      arguments+=("$@")
      return
    elif [[ $word == --* && $known == *" $name= "* ]]; then
      if [[ $word == *=* ]]; then
        option[${name#--}]=${word#*=}
      else
        option[${name#--}]=${1-}
        shift $(($# > 0))
      fi
      [[ -n ${option[${name#--}]} ]] || refuse "$name takes a value"
    elif [[ $word == --* && $known == *" $word "* ]]; then
      option[${word#--}]=yes
    elif [[ $word == -* && $known != *" ... "* ]]; then
      refuse "unknown option $word"
    else
      arguments+=("$word")
    fi
  done
}
