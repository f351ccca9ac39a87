" Vim syntax file
" Language: timing constraints of toveng

if exists('b:current_syntax')
  finish
endif

syntax case match
syntax sync minlines=1

" Comments first: disabled commands and attributes also begin with "#", and later matches take precedence.
syntax match tovengComment '^\s*#.*$' contains=tovengTodo
syntax keyword tovengTodo contained TODO FIXME XXX
syntax match tovengDisabled '^\s*#disable\s\+\%(create_\|set_\)\w\+.*$' contains=tovengDisable
syntax match tovengDisable '#disable\>' contained
syntax match tovengAttribute '^\s*#attribute\>.*$' contains=tovengAttributeWord,tovengString,tovengDisableOption
syntax match tovengAttributeWord '#attribute\>' contained
syntax match tovengDisableOption '\s-disable\s*$' contained

syntax match tovengCommand '^\s*\%(create_clock\|create_generated_clock\|set_clock_groups\|set_input_delay\|set_output_delay\|set_max_delay\|set_min_delay\|set_multicycle_path\|set_false_path\)\>'
syntax match tovengOption '\%(^\|\s\)\zs-\a\w*'
syntax match tovengQuery '\[\s*\zs\%(get_ports\|get_pins\|get_nets\|get_cells\|get_registers\|get_clocks\|all_inputs\|all_outputs\|all_clocks\|all_registers\)\>'
syntax match tovengKey '\c@\%(PI\|PO\|CLKIN\|CLOCK\)\>'
syntax match tovengNumber '\%(^\|[[:space:]{]\)\zs-\=\d\+\%(\.\d*\)\=\%([eE][-+]\=\d\+\)\=\ze\%([[:space:]}]\|$\)'
syntax region tovengString start='"' end='"' oneline
syntax match tovengBracket '[][{}]'
syntax match tovengContinued '\\$'

highlight default link tovengComment Comment
highlight default link tovengTodo Todo
highlight default link tovengDisabled Comment
highlight default link tovengDisable PreProc
highlight default link tovengAttribute Special
highlight default link tovengAttributeWord PreProc
highlight default link tovengDisableOption PreProc
highlight default link tovengCommand Statement
highlight default link tovengOption Type
highlight default link tovengQuery Function
highlight default link tovengKey Constant
highlight default link tovengNumber Number
highlight default link tovengString String
highlight default link tovengBracket Delimiter
highlight default link tovengContinued Error

let b:current_syntax = 'toveng'
