// Calls drawn to be slow and odd, against the native build: DRAWS of them, from SEED on. Where that is not built they are
// left out.
import assert from 'node:assert/strict';
import { spawn } from 'node:child_process';
import { existsSync } from 'node:fs';
import { createInterface } from 'node:readline';
import { test } from 'node:test';
import { INVALID_ARGUMENT, SUCCESS } from '../../wasm/javascript/core.js';
import { newCore, root } from './core.js';
import { callOf, sameResult } from './corpus.js';

const native = new URL('build/gcc.release/bin/call_lines', root).pathname;
const { DRAWS = '10000', SEED = '1' } = process.env;

test('drawn calls have the native status, flag and bits', { skip: !existsSync(native) && `${native} is not built` }, async (t) => {
  const core = newCore();
  const lines = spawn(native, [DRAWS, SEED], { stdio: ['ignore', 'pipe', 'inherit'] });
  let [calls, answered] = [0, 0];
  for await (const line of createInterface({ input: lines.stdout })) {
    const call = callOf(line);
    const got = core.call(call.name, call.args);
    assert.equal(got.status, call.status === SUCCESS ? SUCCESS : INVALID_ARGUMENT, line);
    assert.equal(got.flagged, call.flagged, line);
    assert.ok(sameResult(call.result, got.bits), `${line}\n  got ${got.bits.toString(16)}`);
    ++calls;
    if (got.status === SUCCESS) ++answered;
  }
  assert.equal(calls, Number(DRAWS));
  assert.ok(answered > calls / 4, `${answered} answered`);
  t.diagnostic(`${calls} calls, ${answered} answered: the same`);
});
