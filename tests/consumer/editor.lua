-- Neovim's own client with the installed server: nvim --headless -u NONE -c 'luafile editor.lua'. PROGRAM, DESIGN and
-- OUT are in the environment; the sample is the current file.
local out = {}
local function write(text) table.insert(out, text) end

local function finish()
  local file = assert(io.open(vim.env.OUT, 'w'))
  file:write(table.concat(out, '\n') .. '\n')
  file:close()
  vim.cmd('qall!')
end

local ok, failure = pcall(function()
  local id = assert(vim.lsp.start_client({
    name = 'toveng',
    cmd = { vim.env.PROGRAM, 'serve' },
    root_dir = vim.fn.getcwd(),
    init_options = { design = vim.env.DESIGN },
  }))
  vim.lsp.buf_attach_client(0, id)
  assert(vim.wait(20000, function()
    for _, each in ipairs(vim.diagnostic.get(0)) do
      if each.code == 'missing-name' then return true end
    end
  end, 50), 'no finding of the design')
  for _, each in ipairs(vim.diagnostic.get(0)) do
    write(('%d:%d %s'):format(each.lnum + 1, each.col + 1, each.code or each.user_data.lsp.code))
  end

  local function ask(method, word, extra)
    assert(vim.fn.search(word, 'w') > 0, word)
    local params = vim.tbl_extend('error', vim.lsp.util.make_range_params(), extra or {})
    params.position = params.range.start
    local answer = assert(vim.lsp.buf_request_sync(0, method, params, 10000))[id]
    return assert(answer.result, vim.inspect(answer))
  end
  write(ask('textDocument/hover', 'clk_usb', {}).contents.value)
  local actions = ask('textDocument/codeAction', 'usb_ooe', { context = { diagnostics = {} } })
  write(actions[1].title)
  vim.lsp.util.apply_workspace_edit(actions[1].edit, 'utf-16')
  write(vim.fn.getline('.'))
end)
if not ok then write('failed: ' .. tostring(failure)) end
finish()
