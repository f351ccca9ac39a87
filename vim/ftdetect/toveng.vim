" Constraint files of toveng.
autocmd BufNewFile,BufRead *.tov setfiletype toveng
