# The options of veltorkyn-radio, as its --help lists them.
complete -F _longopt veltorkyn-radio
