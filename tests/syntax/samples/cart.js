#!/usr/bin/env node
'use strict';
import { readFile } from 'node:fs/promises';
export default class Cart extends Map {
  #total = 0;
  static limit = 1_000_000n;

  constructor(owner, ...items) {
    super();
    this.owner = owner ?? 'nobody\'s';
    for (const item of items) this.add(item);
  }

  /* Adds an item:
   * `not a template`, "not a text" // nor this
   */
  add({ name, price = 0.5, count = 0x10 }) {
    if (price < 0 || Number.isNaN(price)) throw new RangeError(`price of ${name}: ${price}`);
    this.#total += price * count; // before tax
    this.set(name, { price, count });
    return this;
  }

  get total() { return this.#total; }

  *names() { yield* this.keys(); }

  describe() {
    const list = [...this].map(([name, { count }]) => `${count} x ${name.replace(/-/g, ' ')}`);
    const box = `Cart of ${this.owner} {
  ${list.length > 0 ? `items: ${list.join(`, `)}` : "empty \"cart\""}
  cost: \${ ${(() => { const o = { a: 1 }; return o.a; })()} \` and ${/* why */ this.#total}
}`;
    return box;
  }
}

const numbers = [0b1010, 0o17, 1e3, 1.5e-3, .5, 12n, 0xFF_FF];
const marks = "tab\t, unicode \u00e4, hex \x41, \"quoted\", 'single'";
let nothing = undefined, empty = null, not = NaN, yes = true, no = false;

export async function load(path) {
  try {
    const text = await readFile(path, 'utf8');
    return JSON.parse(text);
  } catch (error) {
    console.error('cannot read', path, error);
  } finally {
    delete globalThis.lock;
  }
  label: for (;;) { if (typeof path === 'string' && path !== '') break label; else continue; }
}

const long = 'it goes \
  on here', more = "and \
  here";
const half = numbers.length / 2, quarter = half / 2; // two divisions
const open = 'not closed
const next = "neither
const $after = _x >= 1 ? a : b;
const tpl = `never closed ${next}
const inside = 1; // still the template
`;
const dots = name.replace(/[/"'`]+\/(\d+)/g, '').split(/,\s*/), rest = [/a/i, /^b"/m];
const after = (/* why */ 5), both = /x/.test(name) ? /^'/ : /"$/; // two
return /=/.test(name) && !/`/.exec(name);
