for command in taliro Taliro
    complete -c $command -l help -d 'Say what can be given'
    complete -c $command -l version -d 'Print the version'
end
