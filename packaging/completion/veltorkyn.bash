# The options of veltorkyn, as its --help lists them.
complete -F _longopt veltorkyn
