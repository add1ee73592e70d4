# Completion of quilloctl for fish.

# The words before the cursor that are neither options nor their values: the command and its arguments.
function __quilloctl_arguments
    set -l skip
    for word in (commandline -opc)[2..-1]
        if set -q skip[1]
            set -e skip
            continue
        end
        switch $word
            case --desktop --data-dir --only --except --update --adapter --clean-slate --wait-limit --late
                set skip yes
            case '-*'
            case '*'
                printf '%s\n' $word
        end
    end
end

# Whether the line is about one of these commands.
function __quilloctl_is
    set -l arguments (__quilloctl_arguments)
    set -q arguments[1]; and contains -- $arguments[1] $argv
end

# The same, with so many arguments behind the command.
function __quilloctl_has
    set -l arguments (__quilloctl_arguments)
    test (count $arguments) -eq (math $argv[1] + 1); and contains -- $arguments[1] $argv[2..-1]
end

# Whether the line begins with these two arguments.
function __quilloctl_of
    set -l arguments (__quilloctl_arguments)
    test (count $arguments) -ge 2; and test "$arguments[1] $arguments[2]" = "$argv"
end

function __quilloctl_no_command
    test (count (__quilloctl_arguments)) -eq 0
end

# Names that quilloctl lists, from where the line says.
function __quilloctl_names
    set -l globals
    set -l words (commandline -opc)
    set -l place (contains -i -- --data-dir $words)
    and set globals --data-dir $words[(math $place + 1)]
    quilloctl $globals complete $argv 2>/dev/null
end

function __quilloctl_applications
    set -l arguments (__quilloctl_arguments)
    set -q arguments[2]; and __quilloctl_names applications $arguments[2]
end

function __quilloctl_desktops
    printf '%s\n' x11 simulated:
    set -l typed (commandline -ct)
    string match -q 'simulated:*' -- $typed
    and for file in (__fish_complete_path (string replace simulated: '' -- $typed))
        printf 'simulated:%s\n' $file
    end
end

complete -c quilloctl -f
complete -c quilloctl -l desktop -x -a '(__quilloctl_desktops)' -d 'The desktop to use'
complete -c quilloctl -l data-dir -x -a '(__fish_complete_directories)' -d 'Where workspaces are kept'
complete -c quilloctl -l json -d 'Print one JSON value a line'
complete -c quilloctl -s q -l quiet -d 'Say nothing of what went well'
complete -c quilloctl -l keep-scene -d 'Keep what changed on a simulated desktop'
complete -c quilloctl -s h -l help -d 'Print help'
complete -c quilloctl -l version -d 'Print the version'

for line in 'doctor What works on this machine' 'windows The windows that a save would record' \
        'displays The attached displays' 'save Save what is open, or renew a workspace' \
        'plan What a restore would do' 'diff How the desktop differs from a workspace' \
        'restore Bring a workspace back' 'undo Put everything back as it was before' 'list All workspaces' 'show One workspace' \
        'rename Give a workspace another name' 'duplicate Copy a workspace' 'delete Delete workspaces' \
        'layout How a workspace stands on each set of displays' 'watch What becomes of the workspaces' \
        'history The last sessions' 'launcher How applications without a menu entry are started' \
        'export Write each workspace to a file' 'import Add the workspace of a file' \
        'validate Check a workspace file' 'report Write a file that shows a problem' 'help Print help'
    set -l parts (string split -m 1 ' ' $line)
    complete -c quilloctl -n __quilloctl_no_command -a $parts[1] -d $parts[2]
    complete -c quilloctl -n '__quilloctl_has 0 help' -a $parts[1] -d $parts[2]
end

complete -c quilloctl -n '__quilloctl_has 0 plan diff restore show report' -a '(__quilloctl_names sessions)'
complete -c quilloctl -n '__quilloctl_has 0 rename duplicate' -a '(__quilloctl_names workspaces)'
complete -c quilloctl -n '__quilloctl_is delete' -a '(__quilloctl_names workspaces)'
complete -c quilloctl -n '__quilloctl_is export' -F -a '(__quilloctl_names sessions)'
complete -c quilloctl -n '__quilloctl_is import validate report' -F
complete -c quilloctl -n '__quilloctl_has 0 layout' -a 'list save remove'
complete -c quilloctl -n '__quilloctl_has 1 layout' -a '(__quilloctl_names workspaces)'
complete -c quilloctl -n '__quilloctl_has 0 history' -a 'list save clear'
complete -c quilloctl -n '__quilloctl_has 0 launcher' -a 'add list remove'
complete -c quilloctl -n '__quilloctl_of launcher remove' -a '(__quilloctl_names launchers)'
complete -c quilloctl -n '__quilloctl_has 1 launcher; and __quilloctl_of launcher add' -a '(__quilloctl_names launchers)'
complete -c quilloctl -n '__quilloctl_has 2 launcher; and __quilloctl_of launcher add' -a '(__fish_complete_command)'
complete -c quilloctl -n '__quilloctl_has 1 help; and __quilloctl_of help history' -a 'list save clear'
complete -c quilloctl -n '__quilloctl_has 1 help; and __quilloctl_of help launcher' -a 'add list remove'
complete -c quilloctl -n '__quilloctl_is plan' -l exit-code -d 'Status 5 where there is something to do'
complete -c quilloctl -n '__quilloctl_is plan diff restore' -l only -x -a '(__quilloctl_applications)' \
    -d 'Only this application'
complete -c quilloctl -n '__quilloctl_is plan diff restore' -l except -x -a '(__quilloctl_applications)' \
    -d 'All but this application'
complete -c quilloctl -n '__quilloctl_is save plan diff restore history report' -l adapter -x \
    -a 'finder chromium safari firefox' -d 'An integration to use'
complete -c quilloctl -n '__quilloctl_is plan restore report' -l clean-slate -x -a 'keep hide quit' \
    -d 'What becomes of other applications'
complete -c quilloctl -n '__quilloctl_is plan restore' -l arrange -d 'Only move windows that are open'
complete -c quilloctl -n '__quilloctl_is plan restore' -l display -x -d 'Which attached display a saved one is'
complete -c quilloctl -n '__quilloctl_is restore' -l wait -d 'Wait for the desktop first'
complete -c quilloctl -n '__quilloctl_is restore' -l wait-limit -x -d 'How long at most, in seconds'
complete -c quilloctl -n '__quilloctl_is restore' -l late -x -d 'Place windows that open within so many seconds'
complete -c quilloctl -n '__quilloctl_is restore' -s y -l yes -d 'Without asking'
complete -c quilloctl -n '__quilloctl_is undo' -l plan -d 'Say what would be put back'
complete -c quilloctl -n '__quilloctl_is undo' -l quit-launched -d 'Also quit what was launched'
complete -c quilloctl -n '__quilloctl_is save' -l update -x -a '(__quilloctl_names workspaces)' \
    -d 'Renew this workspace'
complete -c quilloctl -n '__quilloctl_is save; or __quilloctl_of layout save' -l force -d 'Also from a doubtful desktop'
complete -c quilloctl -n '__quilloctl_is watch' -l count -x -d 'End after so many events'
complete -c quilloctl -n '__quilloctl_is list history' -l long -d 'With more columns'
complete -c quilloctl -n '__quilloctl_is export report' -l force -d 'Replace an existing file'
