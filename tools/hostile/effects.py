"""Effect files of 1 MiB beside a small scene: texts, functions of shaders, and the compiled form."""

from .cases import MEBIBYTE, Case, damage, fill
from .texts import HEAD, TRIANGLE

SCENE = HEAD + b"*MATERIAL_LIST{*MATERIAL 0{*MATERIAL_NAME \"shader='e.fx'\"}}" + TRIANGLE % (b'm', b'*MATERIAL_REF 0')
TECHNIQUE = b'technique T{pass P{ZFunc=ALWAYS;}}\n'
SHADER = (b'technique T{pass P{PixelShader=compile ps_3_0 Main();VertexShader=compile vs_3_0 Place();}}\n'
          b'float4 Place(float4 at:POSITION):POSITION{return at;}\n')


def effect_texts():
    for unit in (b'{', b'}', b'(', b'"', b'/*', b'//', b'#', b'#if 1\n', b'#if 0\n', b'#define A A\n', b'#else\n', b'\\\n', b';',
                 b'<', b'float ', b'a', b'1', b'\0', b'\xff', b'#include "e.fx"\n', b'#error a\n', b'#pragma a\n', b'#line 9\n',
                 b'technique T{', b'pass P{', b'struct S{', b'float a=', b'float a=(', b'float a=-', b'float a={', b'float4 f(',
                 b'asm{', b'sampler s=sampler_state{', b'+', b'f(', b'a.', b'a[', b'?', b'if(1)', b'for(;;)', b'namespace n{'):
        name = unit.decode('latin-1').strip()
        yield f'only-{name}', fill(unit)
        yield f'after-a-technique-{name}', fill(unit, TECHNIQUE)
    yield 'defines', fill(lambda i: b'#define A%d %d\n' % (i, i), b'', TECHNIQUE)
    yield 'macro-doubles', b''.join(b'#define A%d A%d A%d\n' % (i + 1, i, i) for i in range(60)) + b'A60\n' + TECHNIQUE
    yield 'macro-of-arguments', b'#define F(x) x x\n' + b'F(' * 31 + b'a' + b')' * 31 + b'\n' + TECHNIQUE
    yield 'macro-calls', fill(b'F(F(F(a)))\n', b'#define F(x) (x)+(x)\n')
    yield 'macro-joined', fill(b'J(a,J(b,c))', b'#define J(a,b) a##b\n')
    yield 'if-expressions', fill(b'#if ' + b'(1+2*3-4)&&' * 400 + b'1\n#endif\n')
    yield 'if-signs', b'#if ' + b'!' * MEBIBYTE
    yield 'parameters', fill(lambda i: b'float p%d;' % i, b'', TECHNIQUE)
    yield 'parameters-named-alike', fill(b'float p;', b'', TECHNIQUE)
    yield 'values', fill(lambda i: b'float v%d=%d+sin(%d);' % (i, i, i), b'', TECHNIQUE)
    yield 'arrays', fill(lambda i: b'float4x4 v%d[32768];' % i, b'', TECHNIQUE)
    yield 'array-values', b'float a[32768]={' + fill(b'1,', size=65536 * 2) + b'1};' + TECHNIQUE
    yield 'structs', fill(lambda i: b'struct S%d{float a,b,c;};S%d s%d;' % (i, i, i), b'', TECHNIQUE)
    yield 'struct-arrays', b'struct S0{float a[8];};' + b''.join(
        b'struct S%d{S%d a[8],b[8];};' % (i + 1, i) for i in range(9)) + b'S7 s;' + TECHNIQUE
    yield 'annotations', fill(lambda i: b'float p%d<string a="b";float c=1;>;' % i, b'', TECHNIQUE)
    yield 'textures', fill(lambda i: b'texture t%d<string ResourceName="%d.png";>;' % (i, i), b'', TECHNIQUE)
    yield 'techniques', fill(lambda i: b'technique T%d{pass P{}}' % i)
    yield 'passes', fill(lambda i: b'pass P%d{ZFunc=LESS;}' % i, b'technique T{', b'}')
    yield 'states', fill(b'ZFunc=LESS;', b'technique T{pass P{', b'}}')
    yield 'state-values', fill(lambda i: b'TextureTransform[%d]=float4x4(1,0,0,0,0,1,0,0,0,0,1,0,0,0,0,1);' % (i % 8),
                               b'technique T{pass P{', b'}}')
    yield 'samplers', fill(lambda i: b'sampler s%d=sampler_state{AddressU=CLAMP;};' % i, b'', TECHNIQUE)
    yield 'assembler', b'PixelShader p=asm{ps_2_0 ' + fill(b'mov r0,c0\n', size=MEBIBYTE - 200) + b'};' + TECHNIQUE
    yield 'assemblers', fill(lambda i: b'PixelShader p%d=asm{ps_2_0 def c0,0,0,0,0 mov oC0,c0};' % i, b'', TECHNIQUE)

    yield 'assembler-passes', fill(lambda i: b'pass P%d{PixelShader=asm{ps_2_0 def c0,0,0,0,0 mov oC0,c0};}' % i,
                                   b'technique T{', b'}')


def functions():
    """Functions of shaders whose work is far more than their text."""
    yield 'calls', SHADER + b'float4 f0(float4 a){return a*a;}' + b''.join(
        b'float4 f%d(float4 a){return f%d(a)+f%d(a*2);}' % (i + 1, i, i) for i in range(40)) + \
        b'float4 Main(float4 a:COLOR):COLOR{return f40(a);}'
    yield 'deep-calls', SHADER + b'float4 f0(float4 a){return a*a;}' + b''.join(
        b'float4 f%d(float4 a){return f%d(a)+1;}' % (i + 1, i) for i in range(20000)) + \
        b'float4 Main(float4 a:COLOR):COLOR{return f20000(a);}'
    loop = b'for(int %c=0;%c<1000;%c++)'
    yield 'loops', SHADER + b'float4 Main(float4 a:COLOR):COLOR{' + b''.join(
        loop % (c, c, c) for c in b'ijklmn') + b'a+=a*a;return a;}'
    yield 'endless', SHADER + b'float4 Main(float4 a:COLOR):COLOR{while(true)a+=a;return a;}'
    yield 'unrolled', fill(b'a=a*a+a.yxwz;', SHADER + b'float4 Main(float4 a:COLOR):COLOR{', b'return a;}')
    yield 'variables', fill(lambda i: b'float4 v%d=a*%d;' % (i, i), SHADER + b'float4 Main(float4 a:COLOR):COLOR{',
                            b'return a;}')
    yield 'live-variables', SHADER + b'float4 Main(float4 a:COLOR):COLOR{' + b''.join(
        b'float4 v%d=sin(a*%d);' % (i, i) for i in range(9000)) + b'return ' + b'+'.join(
        b'v%d' % i for i in range(9000)) + b';}'
    yield 'sum', fill(b'+a', SHADER + b'float4 Main(float4 a:COLOR):COLOR{return a', b';}')
    yield 'brackets', SHADER + b'float4 Main(float4 a:COLOR):COLOR{return ' + b'(' * 300000 + b'a' + b')' * 300000 + b';}'
    yield 'ifs', fill(b'if(a.x>0)', SHADER + b'float4 Main(float4 a:COLOR):COLOR{', b'a=1;return a;}')
    yield 'choices', fill(b'a=a.x>0?a:-a;', SHADER + b'float4 Main(float4 a:COLOR):COLOR{', b'return a;}')
    yield 'functions', fill(lambda i: b'float f%d(float a){return a;}' % i, SHADER,
                            b'float4 Main(float4 a:COLOR):COLOR{return a;}')
    yield 'overloads', fill(lambda i: b'float f(float%d a[%d]){return 1;}' % (i % 4 + 1, i + 1), SHADER,
                            b'float4 Main(float4 a:COLOR):COLOR{return a;}')
    yield 'local-array', SHADER + (b'float4 Main(float4 a:COLOR):COLOR{float4 v[4096];for(int i=0;i<4096;i++)v[i]=a*i;'
                                   b'return v[(int)a.x];}')
    yield 'uniforms', fill(lambda i: b'float4 u%d;' % i, SHADER, b'float4 Main(float4 a:COLOR):COLOR{return a;}')
    yield 'shaders', fill(lambda i: b'pass P%d{PixelShader=compile ps_2_0 Main();}' % i,
                          b'float4 Main(float4 a:COLOR):COLOR{return a*a+a;}technique T{', b'}')
    yield 'shader-arguments', fill(lambda i: b'pass P%d{PixelShader=compile ps_3_0 Main(%d);}' % (i, i),
                                   b'float4 Main(float4 a:COLOR,uniform int n):COLOR{for(int i=0;i<n%200;i++)a=a*a+i;return a;}'
                                   b'technique T{', b'}')


def effect_cases(root, random, count):
    for name, content in (*effect_texts(), *functions()):
        yield Case(f'effect-{name}', 'a.qsa', {'a.qsa': SCENE, 'e.fx': content[:MEBIBYTE]}, 'effect')
    good = [path.read_bytes() for path in sorted((root / 'examples/effects').glob('*.fxo'))]
    texts = [path.read_bytes() for path in sorted((root / 'examples/effects').glob('*.fx'))]
    for i in range(count):
        content = random.choice(good)
        for _ in range(random.choice((1, 3))):
            content = damage(content, random)
        tail = random.choice((b'', bytes(64), b'\1\0\0\0' * 16, random.randbytes(64)))
        content += (tail * (MEBIBYTE // 64))[:MEBIBYTE - len(content)]
        yield Case(f'compiled-{i}', 'a.qsa', {'a.qsa': SCENE, 'e.fx': content}, 'effect')
        content = damage(damage(random.choice(texts), random), random)
        yield Case(f'damaged-effect-{i}', 'a.qsa', {'a.qsa': SCENE, 'e.fx': content * (MEBIBYTE // (len(content) + 1))}, 'effect')
