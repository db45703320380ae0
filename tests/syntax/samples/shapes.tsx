import type { Point } from "./point";

/** A shape on the page. */
export interface Shape<T extends object = {}> {
  readonly name: string;
  points?: Point[];
  area(this: Shape, scale?: number): number | undefined;
  [key: string]: unknown;
}

export abstract class Base implements Shape {
  declare readonly name: string;
  protected constructor(private size: number, public label = `shape ${size}`) {}
  abstract area(): number;
  static of(...sizes: readonly number[]): Base[] { return sizes.map((s) => new Square(s)); }
}

@sealed
@component({ selector: "x-square", template: `<b>${1 + 1}</b>` })
class Square extends Base {
  @input() width!: number;
  override area(): number { return this.width ** 2; }
  get text(): `${string}px` { return `${this.width}px`; }
}

type Keys = keyof Shape & string;
type Reply = { kind: "ok"; value: bigint } | { kind: 'error'; reason: never };
type Picked<T> = { [K in keyof T as `get_${string & K}`]?: () => T[K] };
enum Side { Left = 1, Right = Left << 1, Both = Left | Right }
declare module "shapes" { export const version: unique symbol; }

function isSquare(shape: unknown): shape is Square {
  return shape instanceof Square && typeof shape.width !== "undefined";
}

namespace Inner {
  export let counter = 0x1F as const;
  export const big = 10n ** 20n, small = 1.5e-7;
}

async function draw(shape: Shape): Promise<void> {
  const { name = 'none', ...rest } = shape satisfies Shape;
  switch (name) {
    case "circle": // round
      await fetch(`/draw?name=${encodeURIComponent(name)}&n=${rest["n"] ?? 0}`);
      break;
    default:
      throw new Error("unknown \"" + name + "\"\n");
  }
  const view = <Frame title="shape" wide={true}>{name}</Frame>;
  let open: string = "not closed
  let after: boolean = true;
}
/* never closed
const hidden: any = 1;
